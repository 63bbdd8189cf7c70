#include <cctype>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include "Support/MemoryStore.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Storage/SessionLookup.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing_support::MemoryStore;

struct SessionLookupTest : testing::Test {
  MemoryStore memory;
  Options options;

  std::shared_ptr<PowerSession> finished(double second) {
    auto session = memory.start(second);
    memory.store->stop(session, instantAt(second + 60));
    return session;
  }

  std::shared_ptr<PowerSession> find(const std::string& name) {
    options.word = name;
    return findSession(*memory.store, options);
  }

  SessionSides findBoth(const std::string& a, const std::string& b) {
    options.word = a;
    options.other = b;
    return findSides(*memory.store, options);
  }

  // How the lookup of `name` fails; no value when it does not.
  std::optional<Failure> failureOf(const std::string& name) {
    try {
      static_cast<void>(find(name));
    } catch (const Failure& failure) {
      return failure;
    }
    return std::nullopt;
  }
};

TEST_F(SessionLookupTest, FindsAnIdentifierTheBeginningOfOneAndTheLast) {
  const auto older = finished(1000);
  const auto newer = finished(2000);
  EXPECT_EQ(find(older->id().text()), older);
  EXPECT_EQ(find(shortID(*newer)), newer);
  EXPECT_EQ(find("last"), newer);
}

TEST_F(SessionLookupTest, TheLastIsTheOneThatWasMadeLast) {
  finished(5000);
  memory.clock.set(memory.clock.now() + Seconds{1});
  const auto ofAnOldTrace = finished(1000);
  EXPECT_EQ(find("last"), ofAnOldTrace);
}

TEST_F(SessionLookupTest, TheCaseOfTheIdentifierDoesNotMatter) {
  const auto session = finished(1000);
  std::string lower = session->id().text();
  for (char& character : lower)
    character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  EXPECT_EQ(find(lower), session);
}

TEST_F(SessionLookupTest, WhatIsNotThereHasAStatusOfItsOwn) {
  finished(1000);
  const auto failure = failureOf("zzz");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->status(), ExitStatus::noSession);
  EXPECT_STREQ(failure->what(), "there is no session 'zzz'. 'quellin sessions' lists them.");
}

TEST_F(SessionLookupTest, WhatHelpsIsOverTheSameStore) {
  options.store = "/tmp/a.store";
  EXPECT_STREQ(failureOf("last")->what(),
               "there are no sessions yet. 'quellin record --store /tmp/a.store' makes one.");
  finished(1000);
  EXPECT_THAT(failureOf("zzz")->what(), HasSubstr("'quellin sessions --store /tmp/a.store' lists them."));
}

TEST_F(SessionLookupTest, InAnEmptyStoreThereIsNoLastOne) {
  const auto failure = failureOf("last");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->status(), ExitStatus::noSession);
  EXPECT_STREQ(failure->what(), "there are no sessions yet. 'quellin record' makes one.");
}

TEST_F(SessionLookupTest, ABeginningThatSeveralShareIsRefused) {
  for (int count = 0; count < 17; ++count) finished(1000 + 100 * count);  // two of them share the first digit
  std::string shared;
  for (const char digit : std::string_view{"0123456789ABCDEF"}) {
    const auto sessions = memory.store->sessions();
    if (std::ranges::count_if(
            sessions, [&](const auto& session) { return session->id().text().front() == digit; }) > 1) {
      shared = digit;
    }
  }
  const auto failure = failureOf(shared);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->status(), ExitStatus::usage);
  EXPECT_THAT(failure->what(), HasSubstr("Give more of the identifier."));
}

TEST_F(SessionLookupTest, SidesAreNamedByTitlesToo) {
  const auto old = finished(1000);
  const auto other = finished(2000);
  const auto other2 = finished(3000);
  old->setTitle("Old");
  const SessionSides sides = findBoth("Old", "Test");
  EXPECT_THAT(sides.a, testing::ElementsAre(old));
  EXPECT_THAT(sides.b, testing::ElementsAre(other2, other));
}

TEST_F(SessionLookupTest, ASessionOnBothSidesIsRefused) {
  finished(1000);
  try {
    static_cast<void>(findBoth("last", "Test"));
    FAIL();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::usage);
    EXPECT_THAT(failure.what(), HasSubstr("is named twice"));
  }
}

TEST_F(SessionLookupTest, NoNameIsNoSession) {
  finished(1000);
  const auto failure = failureOf("");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->status(), ExitStatus::noSession);
}

}  // namespace
}  // namespace quellin::cli
