# SPDX-License-Identifier: Apache-2.0
"""The two routers of the sandbox as OpenWrt routers, and a browser that uses their pages as a person does."""

import json
import os
import re
import subprocess
import time
import urllib.request

from selenium import webdriver
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support import expected_conditions
from selenium.webdriver.support.ui import Select

HERE = os.path.dirname(os.path.abspath(__file__))
TREE = os.path.dirname(os.path.dirname(HERE))
PACKAGE = os.path.join(TREE, "packaging/openwrt/frruci/files")
FRRUCI = os.environ["FRRUCI_PROGRAM"]
OPENWRT_ROOT = os.environ["FRRUCI_OPENWRT_ROOT"]
PICTURES = os.environ["FRRUCI_PICTURES"]
PASSWORD = "secret"
# The tab that has to be opened before a field is seen.
FIND_TAB = """
    const field = document.querySelector(arguments[0]), pane = field && field.closest('[data-tab-active=false]');
    return pane ? [pane.dataset.tab] : [];"""
WIDE, PHONE = 1100, 390
PROTOCOLS = ("ospf", "rip", "nhrp")


class CommandFailed(Exception):
    """A command on a router ended with another status than 0."""


def wait(what, condition, seconds=60):
    """Returns the condition's first true value."""
    deadline = time.monotonic() + seconds
    last = None
    while time.monotonic() < deadline:
        try:
            value = condition()
            if value:
                return value
        except (CommandFailed, OSError, WebDriverException) as error:
            last = str(error).partition("Stacktrace")[0]
        time.sleep(0.1)
    raise AssertionError(f"not within {seconds} seconds: {what}" + (f" ({last})" if last else ""))


class Router:
    """One router: its commands, its OpenWrt, and its /ubus as somebody without a browser would use it."""

    def __init__(self, address, entrance=()):
        self.address = address
        self.entrance = list(entrance)

    def run(self, *command):
        done = subprocess.run(
            self.entrance + list(command), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False
        )
        if done.returncode != 0:
            raise CommandFailed(f"{command} ended with {done.returncode}: {done.stdout}")
        return done.stdout

    def openwrt(self, *command):
        return self.run("bash", f"{HERE}/openwrt", "run", *command)

    def vtysh(self, *commands):
        return self.run("vtysh", *[word for command in commands for word in ("-c", command)])

    def switch_on(self):
        self.run("bash", f"{HERE}/openwrt", OPENWRT_ROOT, FRRUCI)
        # The pages wait so long before they ask whether the router still answers.
        self.uci("set luci.apply.holdoff=1", "commit luci")

    def uci(self, *lines):
        for line in lines:
            self.openwrt("uci", *line.split(" "))

    def stored(self, option):
        return self.openwrt("uci", "-q", "get", option).strip()

    def empty(self):
        """Everything off and as the package has it."""
        for name in PROTOCOLS:
            self.run("cp", f"{PACKAGE}/{name}.config", f"/etc/config/{name}")
        self.openwrt("reload_config")
        self.run(FRRUCI, "apply")
        # Nothing but a restart ends it.
        self.run("bash", "-c", "killall -q -KILL nhrpd || true")

    def signal(self, name, command):
        """To the processes whose command line has this in it."""
        listed = self.run("ps", "-w").splitlines()
        found = [line.split()[0] for line in listed if command in line]
        assert found, f"{command} does not run"
        self.run("kill", f"-{name}", *found)

    def ask(self, session, verb, *params):
        body = {"jsonrpc": "2.0", "id": 1, "method": verb, "params": [session, *params]}
        request = urllib.request.Request(f"http://{self.address}/ubus", json.dumps(body).encode())
        with urllib.request.urlopen(request, timeout=60) as answer:
            return json.load(answer)

    def call(self, session, subject, method, **arguments):
        """The status of an ubus call, 0 or an error's number, and its answer."""
        answer = self.ask(session, "call", subject, method, arguments)
        if "error" in answer:
            return answer["error"]["code"], {}
        return answer["result"][0], answer["result"][1] if len(answer["result"]) > 1 else {}

    def session(self, user):
        nobody = "0" * 32
        status, answer = self.call(nobody, "session", "login", username=user, password=PASSWORD)
        assert status == 0, answer
        return answer["ubus_rpc_session"]


class Browser:
    """What a person does with a page. Fields are named as the store names them."""

    def __init__(self):
        options = webdriver.ChromeOptions()
        for word in ("--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars"):
            options.add_argument(word)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(options=options)
        self.screen(WIDE)

    def close(self):
        self.driver.quit()

    def find(self, css):
        return [one for one in self.driver.find_elements(By.CSS_SELECTOR, css) if one.is_displayed()]

    def click(self, css, text=""):
        def attempt():
            one = next(one for one in self.find(css) if text in one.text)
            self.driver.execute_script("arguments[0].scrollIntoView({block: 'center'})", one)
            one.click()
            return True

        wait(f"a click on {css} {text}", lambda: any(text in one.text for one in self.find(css)) and attempt())

    def text(self, css="#view"):
        return "\n".join(one.text for one in self.find(css))

    def sees(self, pattern, css="#view", seconds=60):
        return wait(f"{pattern} in {css}", lambda: re.search(pattern, self.text(css), re.IGNORECASE), seconds)

    def log_in(self, router, user="root"):
        self.driver.delete_all_cookies()
        self.base = f"http://{router.address}/cgi-bin/luci"
        self.driver.get(self.base)
        wait("the login", lambda: self.find("[name=luci_password]"))
        name = self.find("[name=luci_username]")[0]
        name.clear()
        name.send_keys(user)
        self.find("[name=luci_password]")[0].send_keys(PASSWORD, Keys.ENTER)
        wait("a menu", lambda: self.find("#topmenu a"))

    def open(self, page):
        self.driver.get(f"{self.base}/admin/services/frruci/{page}")
        wait(f"the page {page}", lambda: self.find("#view h2") and not self.find("#view > .spinning"))

    def field(self, name):
        """The field CONFIG.SECTION.OPTION, in the open window when there is one; a section may be any, '*'."""
        config, section, option = name.split(".")
        start, end = f"cbid.{config}." + ("" if section == "*" else f"{section}."), f".{option}"

        def found():
            window = "#modal_overlay " if self.find("#modal_overlay .cbi-map") else "#view "
            css = f'{window}[data-field^="{start}"][data-field$="{end}"]'
            for tab in self.driver.execute_script(FIND_TAB, css):
                self.click(f'{window}.cbi-tabmenu [data-tab="{tab}"] a')
            return self.find(css)

        return wait(f"the field {name}", found)[0]

    def enter(self, name, value):
        field = self.field(name)
        self.driver.execute_script("arguments[0].scrollIntoView({block: 'center'})", field)
        choices = field.find_elements(By.CSS_SELECTOR, "select")
        drop_down = field.find_elements(By.CSS_SELECTOR, ".cbi-dropdown")
        if choices:
            Select(choices[0]).select_by_value(value)
        elif drop_down:
            self.drop_down(drop_down[0], value)
        elif field.find_elements(By.CSS_SELECTOR, "input[type=checkbox]"):
            self.tick(field, value)
        else:
            text = field.find_element(By.CSS_SELECTOR, "input")
            text.send_keys(Keys.CONTROL, "a")
            text.send_keys(value, Keys.TAB)

    def tick(self, field, value):
        box = field.find_element(By.CSS_SELECTOR, "input[type=checkbox]")
        if box.is_selected() != value:
            self.driver.execute_script("arguments[0].click()", box)

    def drop_down(self, box, value):
        box.click()
        wait("the open list", lambda: box.get_attribute("open") is not None)
        offered = box.find_elements(By.CSS_SELECTOR, f'li[data-value="{value}"]')
        if offered:
            offered[0].click()
        else:
            box.find_element(By.CSS_SELECTOR, "input.create-item-input").send_keys(value, Keys.ENTER)
        wait("the list to close", lambda: box.get_attribute("open") is None)

    def choose(self, css, start):
        """The entry of a list whose text begins so."""

        def attempt():
            box = Select(self.find(css)[0])
            box.select_by_visible_text(next(one.text for one in box.options if one.text.startswith(start)))
            return True

        wait(f"{start} in {css}", lambda: self.find(css) and attempt())

    def save_window(self):
        """The page is drawn anew when it closes."""
        drawn = self.driver.find_element(By.CSS_SELECTOR, "#view .cbi-section")
        self.click("#modal_overlay .cbi-button-positive")
        wait("the window to close", lambda: not self.find("#modal_overlay .cbi-map"))
        wait("the new page", lambda: expected_conditions.staleness_of(drawn)(self.driver))

    def save_and_apply(self):
        self.click(".cbi-page-actions .cbi-button-apply")
        wait("the change to be applied", lambda: self.find("#modal_overlay .modal"), 20)
        wait("the change to be confirmed", lambda: not self.find("#modal_overlay .modal"))

    def complaints(self):
        """What the pages did wrong, by the browser's own word."""
        return [
            entry["message"]
            for entry in self.driver.get_log("browser")
            if entry["level"] == "SEVERE" and "Failed to load resource" not in entry["message"]
        ]

    def screen(self, width, height=800):
        phone = width < 500
        page = {"width": width, "height": height, "deviceScaleFactor": 2 if phone else 1, "mobile": phone}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", page)
        self.width = width

    def picture(self, name):
        """Takes the whole page, and returns the width that it needs."""
        self.screen(self.width, self.driver.execute_script("return document.documentElement.scrollHeight"))
        self.driver.save_screenshot(f"{PICTURES}/{name}.png")
        needed = self.driver.execute_script("return document.documentElement.scrollWidth")
        self.screen(self.width)
        return needed
