// SPDX-License-Identifier: Apache-2.0
// The same call many times at once.
#ifndef FRRUCI_TESTS_RPCD_MANY_H
#define FRRUCI_TESTS_RPCD_MANY_H

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/host/program.h"
#include "tests/rpcd/json_text.h"

namespace many {

/// All answers, without spaces.
inline std::vector<std::string> answers(const std::string &method, int count) {
    std::vector<pid_t> children;
    std::vector<int> outputs;
    for (int i = 0; i < count; ++i) {
        const int input = open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
        outputs.push_back(open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
        EXPECT_EQ(write(input, "{}", 2), 2);
        lseek(input, 0, SEEK_SET);
        children.push_back(
            program::start({"rpcd", "call", method}, input, outputs.back(), outputs.back()));
        close(input);
    }
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < children.size(); ++i) {
        EXPECT_EQ(program::wait(children[i]), 0);
        lseek(outputs[i], 0, SEEK_SET);
        texts.push_back(jsontext::compact(program::readAll(outputs[i])));
        close(outputs[i]);
    }
    return texts;
}

} // namespace many

#endif
