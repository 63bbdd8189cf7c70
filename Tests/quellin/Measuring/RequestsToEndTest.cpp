#include <csignal>
#include <utility>

#include <gmock/gmock.h>

#include "Support/CaseNames.h"
#include "quellin/Measuring/RequestsToEnd.h"

namespace quellin::cli {
namespace {

using enum RequestsToEnd::Answer;

struct Signals {
  std::string name;
  std::vector<std::pair<int, RequestsToEnd::Answer>> answers;
};

class RequestsToEndTest : public testing::TestWithParam<Signals> {};

TEST_P(RequestsToEndTest, AreAnsweredOneAfterTheOther) {
  RequestsToEnd requests;
  EXPECT_FALSE(requests.wereHeard());
  for (const auto& [signal, answer] : GetParam().answers) EXPECT_EQ(requests.answerTo(signal), answer);
  EXPECT_TRUE(requests.wereHeard());
}

TEST_P(RequestsToEndTest, CallForNothingOnceTheyAreRefused) {
  RequestsToEnd requests;
  EXPECT_FALSE(requests.refuse()) << "none came before";
  for (const auto& [signal, answer] : GetParam().answers) EXPECT_EQ(requests.answerTo(signal), nothing);
  EXPECT_TRUE(requests.wereHeard());
}

INSTANTIATE_TEST_SUITE_P(
    RequestsToEndTest, RequestsToEndTest,
    testing::Values(Signals{"two by hand", {{SIGINT, tell}, {SIGINT, endAtOnce}}},
                    Signals{"two of several kinds", {{SIGTERM, tell}, {SIGINT, endAtOnce}}},
                    Signals{"the kernel's hang-up and the shell's", {{SIGHUP, tell}, {SIGHUP, nothing}}},
                    Signals{"a hang-up behind a request", {{SIGINT, tell}, {SIGHUP, nothing}}},
                    Signals{"the end of a login, and somebody who insists",
                            {{SIGHUP, tell}, {SIGHUP, nothing}, {SIGTERM, nothing}, {SIGINT, endAtOnce}}}),
    testing_support::namedBy(&Signals::name));

TEST(RequestsToEndRefusalTest, IsOfUseAfterARequest) {
  RequestsToEnd requests;
  EXPECT_EQ(requests.answerTo(SIGTERM), tell);
  EXPECT_TRUE(requests.refuse());
  EXPECT_EQ(requests.answerTo(SIGTERM), nothing);
}

}  // namespace
}  // namespace quellin::cli
