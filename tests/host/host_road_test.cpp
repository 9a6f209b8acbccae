// SPDX-License-Identifier: Apache-2.0
// The host program with the real library, against fake daemons: the whole road of a request.

#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "tests/support/stage.h"

namespace {

struct Outcome {
    int status;
    std::string output;
};

// By hand: system and popen are the stage's own in this program.
Outcome frruci(std::vector<std::string> words) {
    words.insert(words.begin(), HOST_PROGRAM);
    std::vector<char *> vector;
    for (std::string &word : words) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);
    int ends[2];
    if (pipe(ends) != 0) {
        return {-1, ""};
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execv(vector[0], vector.data());
        _exit(126);
    }
    close(ends[1]);
    Outcome outcome = {-1, ""};
    char byte = 0;
    while (read(ends[0], &byte, 1) == 1) {
        outcome.output.push_back(byte);
    }
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) == child && WIFEXITED(status)) {
        outcome.status = WEXITSTATUS(status);
    }
    return outcome;
}

class Road : public testing::Test {
protected:
    void SetUp() override {
        stage_.noPipe("ospf_pipe_c2lua"); // the program makes its own
        // Sanitizers load libraries in the program's name, without its run path.
        setenv("FRRUCI_LIBRARY", LIBRARY, 1);
    }

    stage::Stage stage_;
};

TEST_F(Road, ASettingGoesToTheDaemonAndItsReplyComesBack) {
    const Outcome outcome =
        frruci({"call", "process_ospf_interface", "eth1.2", "lan", "hello", "15"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "ok\n");
    // Sessions without a command only ask which daemons run.
    EXPECT_NE(std::string(stage_.trace())
                  .find("ospfd: en | configure | interface eth1.2 | ip ospf hello-interval 15\n"),
              std::string::npos);
    EXPECT_NE(std::string(stage_.log()).find(": process_ospf_interface eth1.2 lan hello 15\n"),
              std::string::npos);
}

TEST_F(Road, ARefusedSettingIsAnsweredOkAllTheSame) {
    stage_.answer("ospfd", "ip ospf cost 0", {.code = 2, .text = "% Unknown command\n"});
    EXPECT_EQ(frruci({"call", "process_ospf_interface", "eth1.2", "lan", "cost", "0"}).output,
              "ok\n");
}

TEST_F(Road, WithoutADaemonTheReplyIsStillOk) {
    stage_.absent("ospfd");
    const Outcome outcome =
        frruci({"call", "process_ospf_interface", "eth1.2", "lan", "cost", "7"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "ok\n");
    stage_.deaf("ripd");
    EXPECT_EQ(frruci({"call", "process_ospf_interface", "eth1.2", "lan", "cost", "7"}).status, 0);
}

TEST_F(Road, ASilentDaemonDoesNotHangTheProgram) {
    stage_.answer("ospfd", "configure", {.silent = true});
    const Outcome outcome =
        frruci({"call", "--timeout", "1", "process_ospf_interface", "eth1.2", "lan", "cost", "7"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.output, "");
}

TEST_F(Road, AShowWithoutItsEndMarkerDoesNotHangTheProgram) {
    stage_.answer("ospfd", "show ip ospf neighbor", {.text = "10.0.0.2 row\n", .truncateTo = 14});
    stage_.noPipe("ospf_pipe_c2lua_neighbor");
    EXPECT_EQ(frruci({"call", "--timeout", "1", "process_ospf_neighbor"}).status, 3);
}

TEST_F(Road, ARequestWithoutReplyIsANormalCase) {
    EXPECT_EQ(frruci({"call", "process_ospf_interface", "eth1.2", "lan"}).status, 3);
    EXPECT_EQ(frruci({"call", "process_ospf_interface", "eth1.2", "lan", "auto_type", "1"}).status,
              3);
    EXPECT_EQ(frruci({"call", "process_ospf_interface"}).status, 3);
}

TEST_F(Road, WithoutTheLogFolderTheRequestIsCarriedOut) {
    ASSERT_EQ(rename("/tmp/tmp", "/tmp/away"), 0);
    const Outcome outcome =
        frruci({"call", "process_ospf_interface", "eth1.2", "lan", "cost", "7"});
    EXPECT_EQ(outcome.output, "ok\n"); // the program makes the folder for its pipe
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(Road, NeighbourRowsComeAsTheWebPageGetsThem) {
    stage_.noPipe("ospf_pipe_c2lua_neighbor");
    stage_.answer(
        "ospfd", "show ip ospf neighbor",
        {.text = "\nNeighbor ID     Pri State\n10.0.0.2  1 Full/-\n10.0.0.3  1 Init/-\n"});
    const Outcome outcome = frruci({"call", "process_ospf_neighbor"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "10.0.0.2  1 Full/-\r\n10.0.0.3  1 Init/-\r\n");
}

TEST_F(Road, NhrpAnswersFailWhenTheDaemonRefuses) {
    stage_.noPipe("nhrp_pipe_c2lua");
    stage_.answer("nhrpd", "nhrp nflog-group 3", {.code = 2});
    const Outcome outcome = frruci({"call", "process_nhrp_global", "x", "nflog-group", "3"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "fail\n");
}

TEST_F(Road, TheCacheIsPrintedWhenItIsWholeJson) {
    stage_.noPipe("nhrp_pipe_c2lua_cache");
    stage_.answer("nhrpd", "show ip nhrp cache json", {.text = "{\n  \"table\": [ ]\n}\n"});
    const Outcome outcome = frruci({"show", "nhrp-cache"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "{\"table\":[]}\n");
}

} // namespace
