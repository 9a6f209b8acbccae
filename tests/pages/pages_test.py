# SPDX-License-Identifier: Apache-2.0
"""Two OpenWrt routers with real FRR daemons are set up and watched through their pages, in the sandbox."""

import os
import unittest

from openwrt_router import HERE, PHONE, WIDE, Browser, Router, wait

SECOND = os.path.join(HERE, "../support/second_router")
LINK = "10.1.2.0/24"
KEY = "opensesame"

near = Router("127.0.0.1")
far = Router("10.1.2.2", [SECOND])
browser = None


def setUpModule():
    global browser
    near.switch_on()
    far.switch_on()
    # What only the second router can tell of.
    far.run("ip", "address", "add", "10.9.0.1/24", "dev", "lo")
    browser = Browser()


def tearDownModule():
    browser.close()


def add_network(config, option, network):
    browser.click(f"#cbi-{config}-network .cbi-button-add")
    browser.enter(f"{config}.*.{option}", network)
    browser.save_window()


def add_interface(config, name, **values):
    browser.choose(f"#cbi-{config}-interface .cbi-section-create select", name)
    browser.click(f"#cbi-{config}-interface .cbi-button-add")
    fill_window(config, **values)


def change_interface(config, section, **values):
    browser.click(f"#cbi-{config}-{section} .cbi-button-edit")
    fill_window(config, **values)


def fill_window(config, **values):
    for option, value in values.items():
        browser.enter(f"{config}.eth1_2.{option}", value)
    browser.save_window()


def set_up_ospf(router, router_id):
    """From empty, as a person does."""
    browser.log_in(router)
    browser.open("ospf")
    browser.enter("ospf.global.status", True)
    browser.enter("ospf.global.router_id", router_id)
    add_network("ospf", "ip", LINK)
    add_interface("ospf", "eth1.2", hello="1", dead="4")
    browser.save_and_apply()


def set_up_rip(router, *networks):
    browser.log_in(router)
    browser.open("rip")
    browser.enter("rip.global.status", True)
    browser.enter("rip.config.update_timer", "5")
    for network in networks:
        add_network("rip", "ipaddress", network)
    add_interface("rip", "eth1.2", authen_mode="md5", key_id="1", key=KEY)
    browser.save_and_apply()


def store_ospf(router, router_id, cost=10):
    """What the page stores, without a page."""
    values = {
        "ns": "wan",
        "interface": "eth1.2",
        "cost": cost,
        "retransmit": 5,
        "transmit": 1,
        "priority": 1,
        "hello": 1,
        "dead": 4,
        "network_type": 0,
        "mtu_ignore": 0,
        "passive": 0,
        "auto_type": 0,
    }
    router.uci(
        "set ospf.global.status=on",
        f"set ospf.global.router_id={router_id}",
        "add ospf network",
        "set ospf.@network[-1].ip=10.1.2.0",
        "set ospf.@network[-1].wildcard_mask=255.255.255.0",
        "set ospf.@network[-1].area_id=0",
        "set ospf.eth1_2=interface",
        *[f"set ospf.eth1_2.{option}={value}" for option, value in values.items()],
        "commit ospf",
    )
    router.openwrt("reload_config")


def neighbour(router):
    """The one neighbour of a router, when it is Full."""
    status, answer = router.call(router.session("reader"), "frruci", "neighbors")
    full = [one for one in answer.get("neighbors", []) if one["state"] == "Full"]
    return status == 0 and full and full[0]


class Pages(unittest.TestCase):
    def setUp(self):
        near.empty()
        far.empty()

    def tearDown(self):
        self.assertEqual(browser.complaints(), [])

    def run(self, result=None):
        before = len(result.failures) + len(result.errors)
        super().run(result)
        if len(result.failures) + len(result.errors) > before:
            browser.picture(f"failed-{self._testMethodName}")

    def both_full(self):
        store_ospf(near, "1.1.1.1")
        store_ospf(far, "2.2.2.2")
        wait("the neighbours to be full", lambda: neighbour(near) and neighbour(far))

    def test_ospf_is_set_up_on_two_routers_from_empty(self):
        browser.log_in(near)
        browser.open("status")
        browser.sees("OSPF is switched off|not set up")
        set_up_ospf(far, "2.2.2.2")
        set_up_ospf(near, "1.1.1.1")
        browser.open("status")
        browser.sees(r"2\.2\.2\.2[\s\S]*Full")
        running = near.vtysh("show running-config")
        self.assertIn(" network 10.1.2.0/24 area 0\n", running)
        self.assertIn(" ip ospf hello-interval 1\n", running)
        # The page stores what the replay reads: a missing priority would be sent as 0.
        self.assertEqual(near.stored("ospf.eth1_2.priority"), "1")
        self.assertEqual(neighbour(near)["id"], "2.2.2.2")

    def test_a_cost_is_changed_and_the_neighbour_stays(self):
        self.both_full()
        before = neighbour(near)["uptime"], neighbour(far)["uptime"]
        browser.log_in(near)
        browser.open("ospf")
        change_interface("ospf", "eth1_2", cost="25")
        browser.save_and_apply()
        wait("the new cost", lambda: " ip ospf cost 25\n" in near.vtysh("show running-config"))
        self.assertGreater(neighbour(near)["uptime"], before[0])
        self.assertGreater(neighbour(far)["uptime"], before[1])

    def test_a_refused_value_is_shown_in_the_words_of_the_daemon(self):
        self.both_full()
        near.uci("set ospf.eth1_2.cost=70000", "commit ospf")
        near.openwrt("reload_config")
        browser.log_in(near)
        browser.open("ospf")
        browser.sees(r'ospfd refused "ip ospf cost 70000": .*nknown command', "tr.frruci-refused")
        browser.open("status")
        browser.sees("70000")
        browser.open("ospf")
        # The page itself does not take it.
        browser.click("#cbi-ospf-eth1_2 .cbi-button-edit")
        browser.click("#modal_overlay .cbi-button-positive")
        browser.sees("Cost", "#modal_overlay .frruci-unsaved, #modal_overlay .alert-message")
        browser.enter("ospf.eth1_2.cost", "30")
        browser.save_window()
        browser.save_and_apply()
        wait("nothing to be refused", lambda: "70000" not in browser.text() and "refused" not in browser.text())
        self.assertIn(" ip ospf cost 30\n", near.vtysh("show running-config"))

    def test_a_difference_is_shown_and_applied(self):
        self.both_full()
        near.vtysh("configure", "interface eth1.2", "ip ospf cost 77")
        browser.log_in(near)
        browser.open("ospf")
        browser.sees("does not run what is stored. Differences: 1")
        browser.click(".frruci-state .cbi-button", "Show")
        browser.sees(r"-\s+ip ospf cost 77\s+\+\s+ip ospf cost 10", "#modal_overlay pre")
        browser.click("#modal_overlay .cbi-button", "Close")
        browser.click(".frruci-state .cbi-button-apply")
        wait("no difference", lambda: "Differences" not in browser.text())
        self.assertIn(" ip ospf cost 10\n", near.vtysh("show running-config"))

    def test_rip_runs_with_md5(self):
        set_up_rip(far, LINK, "10.9.0.0/24")
        set_up_rip(near, LINK)
        browser.open("status")
        browser.sees(r"10\.9\.0\.0/24")
        running = near.vtysh("show running-config")
        self.assertIn(" ip rip authentication mode md5", running)
        self.assertIn(f"  key-string {KEY}\n", running)
        browser.open("rip")
        for page in ("rip", "status"):
            browser.open(page)
            self.assertNotIn(KEY, browser.text("body"))
        reader = near.session("reader")
        for method in ("status", "rip", "diff", "doctor"):
            self.assertNotIn(KEY, str(near.call(reader, "frruci", method)))

    def test_switching_off_warns_of_what_else_lives_on_zebra(self):
        self.both_full()
        near.run("sh", "-c", "nhrpd -d > /dev/null 2>&1")
        reader = near.session("reader")
        wait("nhrpd", lambda: near.call(reader, "frruci", "status")[1]["protocols"]["nhrp"]["running"])
        browser.log_in(near)
        browser.open("ospf")
        browser.sees("OSPF is running")
        browser.enter("ospf.global.status", False)
        browser.click(".cbi-page-actions .cbi-button-apply")
        browser.sees("these lose their routes: nhrpd", "#modal_overlay")
        browser.click("#modal_overlay .cbi-button", "Cancel")
        self.assertEqual(near.stored("ospf.global.status"), "on")
        self.assertTrue(neighbour(near))

    def test_a_phrase_reaches_nhrp(self):
        browser.log_in(near)
        browser.open("nhrp")
        browser.enter("json.sdwan.interface", "tun0")
        browser.enter("json.sdwan.network_id", "7")
        browser.click(".cbi-page-actions .cbi-button-save")
        wait("the phrase", lambda: " ip nhrp network-id 7\n" in near.vtysh("show running-config"))
        wait("the store", lambda: near.stored("nhrp.sdwan.network_id") == "7")
        browser.open("nhrp")
        browser.sees("NHRP is running")

    def test_a_reading_login_cannot_change_anything(self):
        self.both_full()
        stored, running = near.run("cat", "/etc/config/ospf"), near.vtysh("show running-config")
        browser.log_in(near, "reader")
        browser.open("status")
        browser.sees("Full")
        for page in ("ospf", "rip", "nhrp"):
            browser.open(page)
            usable = {one.text for one in browser.find("#view .cbi-button:enabled")}
            self.assertEqual(usable - {"Edit", "Show"}, set(), page)
        browser.open("ospf")
        browser.click("#cbi-ospf-eth1_2 .cbi-button-edit")
        browser.field("ospf.eth1_2.cost")
        self.assertEqual(browser.find("#modal_overlay .cbi-button-positive:enabled"), [])
        reader = near.session("reader")
        refusals = [
            near.call(reader, "uci", "set", config="ospf", section="eth1_2", values={"cost": "99"}),
            near.call(reader, "uci", "delete", config="rip", section="global"),
            near.call(reader, "uci", "add", config="nhrp", type="nhrp"),
            near.call(reader, "uci", "commit", config="ospf"),
            near.call(reader, "uci", "apply", rollback=False),
            near.call(reader, "frruci", "apply"),
            near.call(reader, "frruci", "call", handler="process_ospf_global", words=["set", "router_id", "9.9.9.9"]),
            near.call(reader, "file", "write", path="/etc/config/ospf", data=""),
            near.call(reader, "file", "exec", command="/usr/sbin/frruci", params=["apply"]),
            near.call(reader, "service", "delete", name="frruci"),
        ]
        for status, _ in refusals:
            self.assertIn(status, (6, -32002), refusals)
        self.assertEqual(near.run("cat", "/etc/config/ospf"), stored)
        self.assertEqual(near.vtysh("show running-config"), running)

    def test_a_killed_daemon_is_told_and_comes_back(self):
        self.both_full()
        browser.log_in(near)
        browser.open("status")
        browser.sees("Full")
        # The service would start it anew before the page has looked.
        near.signal("STOP", "frruci watch")
        near.signal("KILL", "ospfd --vty_socket")
        browser.sees("ospfd does not run")
        browser.picture("status-killed")
        near.signal("CONT", "frruci watch")
        browser.sees(r"2\.2\.2\.2[\s\S]*Full")
        wait("all to be well", lambda: "does not run" not in browser.text())

    def test_an_apply_that_nobody_confirms_is_rolled_back(self):
        self.both_full()
        root = near.session("root")
        self.assertEqual(near.call(root, "uci", "set", config="ospf", section="eth1_2", values={"cost": "44"})[0], 0)
        self.assertEqual(near.call(root, "uci", "apply", rollback=True, timeout=5)[0], 0)
        wait("the cost", lambda: " ip ospf cost 44\n" in near.vtysh("show running-config"), 5)
        wait("the old cost", lambda: " ip ospf cost 10\n" in near.vtysh("show running-config"))
        self.assertEqual(near.stored("ospf.eth1_2.cost"), "10")

    def test_pages_can_be_looked_at(self):
        self.both_full()
        set_up_rip(far, LINK, "10.9.0.0/24")
        set_up_rip(near, LINK)
        browser.open("nhrp")
        browser.enter("json.sdwan.interface", "tun0")
        browser.enter("json.sdwan.network_id", "7")
        browser.click(".cbi-page-actions .cbi-button-save")
        browser.sees("NHRP is running")
        browser.open("status")
        browser.sees(r"Full[\s\S]*10\.9\.0\.0/24")
        self.addCleanup(browser.screen, WIDE)
        for theme, light in (("bootstrap", "light"), ("bootstrap-dark", "dark")):
            near.uci(f"set luci.main.mediaurlbase=/luci-static/{theme}", "commit luci")
            for width, size in ((WIDE, ""), (PHONE, "-phone")):
                browser.screen(width)
                for page in ("status", "ospf", "rip", "nhrp"):
                    browser.open(page)
                    browser.sees("running")
                    self.assertEqual(browser.picture(f"{page}-{light}{size}"), width, "wider than the screen")


if __name__ == "__main__":
    # Not on the command line: the library ends processes by a word of theirs, which may be part of a test's name.
    unittest.main(argv=["pages", *os.environ.get("FRRUCI_PAGES", "").split()], verbosity=2)
