// SPDX-License-Identifier: Apache-2.0
// Runs replays and sums them up.

#include "host/replay.h"

#include <iterator>

#include <cstdint>
#include <unistd.h>

#include "host/json.h"
#include "host/library.h"
#include "host/plan.h"
#include "host/report.h"
#include "host/streams.h"

namespace frruci::host {

namespace {

bool runEntry(const char *name) {
    auto *entry = find<void()>(name);
    if (entry != nullptr) {
        entry();
    }
    return entry != nullptr;
}

bool replayOspf() {
    return runEntry("ospf_cfg_recovery");
}

bool replayRip() {
    return runEntry("rip_cfg_recovery");
}

const char *underWay = nullptr;

void showProgress() {
    (void)fprintf(err, "\r%s: %zu sent", underWay, traffic().count());
    (void)fflush(err);
}

void endProgress() {
    if (onEvent != nullptr) {
        (void)fputs("\r\033[K", err);
        (void)fflush(err);
    }
    onEvent = nullptr;
}

Status recoverInto(const Replay &replay, Json all) {
    underWay = replay.protocol;
    onEvent = isatty(fileno(err)) != 0 ? showProgress : nullptr;
    bool ran = false;
    {
        const Watched watched(Watched::kEarnest);
        ran = replay.run();
    }
    endProgress();
    if (!ran) {
        return kNotUsable;
    }
    const Judgement judgement(traffic(), replay.scene);
    if (wantsJson()) {
        Json one = jsonObject();
        putJudgement(one, judgement, judgement.status());
        put(all, replay.protocol, one);
    } else if (traffic().isEmpty()) {
        (void)fprintf(out, "%s: nothing to replay\n", replay.protocol);
    } else {
        Text summary;
        addSummary(replay.protocol, judgement, summary);
        (void)fprintf(out, "%s\n", summary.get());
    }
    judgement.tell();
    return judgement.status();
}

void finish(Json all) {
    if (wantsJson()) {
        printJson(all);
    }
    (void)fflush(out);
}

} // namespace

constexpr Replay kReplays[] = {
    {"ospf", Scene::kReplay,     replayOspf},
    {"rip",  Scene::kReplay,     replayRip },
    {"nhrp", Scene::kNhrpReplay, replayNhrp},
};
constexpr std::size_t kReplayCount = std::size(kReplays);

const Replay *findReplay(const char *protocol) {
    for (const Replay &replay : kReplays) {
        if (equals(replay.protocol, protocol)) {
            return &replay;
        }
    }
    return nullptr;
}

Status recover(const Replay &replay) {
    Json all = jsonObject();
    const Status status = recoverInto(replay, all);
    finish(all);
    return status;
}

Status recoverAll() {
    Json all = jsonObject();
    Status status = kAccepted;
    for (const Replay &replay : kReplays) {
        status = worse(status, recoverInto(replay, all));
    }
    finish(all);
    return status;
}

Status planRecovery(const Replay &replay) {
    const Watched watched(Watched::kRehearsal);
    if (!replay.run()) {
        return kNotUsable;
    }
    printPlan(traffic());
    return kAccepted;
}

} // namespace frruci::host
