#include <filesystem>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QuellinHelper/SampleFile.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

namespace fs = std::filesystem;
using testing_support::TemporaryFolder;

class SampleFileTest : public testing::Test {
 protected:
  [[nodiscard]] SampleFile create(const std::string& name = "sample") const {
    auto file = SampleFile::create(_folder.path().string(), name);
    if (!file) throw std::runtime_error(file.error().description());
    return std::move(*file);
  }

  TemporaryFolder _folder;
};

TEST_F(SampleFileTest, IsEmptyPrivateAndUnguessable) {
  const auto file = SampleFile::create(_folder.path().string() + "/");
  ASSERT_TRUE(file);
  EXPECT_THAT(
      file->path(),
      testing::MatchesRegex(_folder.path().string() +
                            "/quellin-powermetrics-[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                            "[0-9A-F]{12}\\.pliststream"));
  struct stat status{};
  ASSERT_EQ(stat(file->path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
  EXPECT_EQ(status.st_size, 0);
  EXPECT_EQ(file->read(), "");
  EXPECT_NE(SampleFile::create(_folder.path().string())->path(), file->path());
}

TEST_F(SampleFileTest, IsRemovedAtTheEndOfItsLife) {
  {
    SampleFile file = create();
    const SampleFile moved = std::move(file);
    EXPECT_TRUE(fs::exists(moved.path()));
  }
  EXPECT_TRUE(fs::is_empty(_folder.path()));
}

TEST_F(SampleFileTest, ReadsWhatWasWrittenToIt) {
  const SampleFile file = create();
  std::string content(300'000, 'x');
  content[7] = '\0';
  _folder.write("sample", content);
  EXPECT_EQ(file.read(), content);
}

TEST_F(SampleFileTest, RefusesMoreThanTheLimit) {
  const SampleFile file = create();
  _folder.write("sample", "12345678");
  EXPECT_EQ(file.read(8), "12345678");
  EXPECT_EQ(file.read(7), std::nullopt);
  EXPECT_EQ(file.read(0), std::nullopt);
}

TEST_F(SampleFileTest, AHugeFileIsNotReadAtAll) {
  const SampleFile file = create();
  fs::resize_file(file.path(), std::uintmax_t{1} << 40);
  EXPECT_EQ(file.read(), std::nullopt);
}

TEST_F(SampleFileTest, RefusesANameThatIsTaken) {
  _folder.write("target", "precious");
  _folder.write("taken", "precious");
  fs::create_symlink(_folder.pathOf("target"), _folder.pathOf("link"));
  fs::create_symlink(_folder.pathOf("nowhere"), _folder.pathOf("dangling"));
  for (const char* name : {"taken", "link", "dangling"}) {
    const auto file = SampleFile::create(_folder.path().string(), name);
    ASSERT_FALSE(file) << name;
    EXPECT_EQ(file.error().code, EEXIST) << name;
  }
  EXPECT_EQ(testing_support::contentOf(_folder.pathOf("target")), "precious");
  EXPECT_EQ(testing_support::contentOf(_folder.pathOf("taken")), "precious");
  EXPECT_FALSE(fs::exists(_folder.pathOf("nowhere")));
}

TEST_F(SampleFileTest, DoesNotReadWhatTookItsPlace) {
  const auto readAfter = [this](auto&& replace) {
    const SampleFile file = create();
    fs::remove(file.path());
    replace(file.path());
    return file.read();
  };
  const std::string other = _folder.write("other", "other content");
  EXPECT_EQ(readAfter([](const std::string&) {}), std::nullopt);
  EXPECT_EQ(readAfter([this](const std::string&) { _folder.write("sample", "new file"); }), std::nullopt);
  EXPECT_EQ(readAfter([&other](const std::string& path) { fs::create_symlink(other, path); }), std::nullopt);
  EXPECT_EQ(readAfter([&other](const std::string& path) { fs::create_hard_link(other, path); }),
            std::nullopt);
  EXPECT_EQ(readAfter([](const std::string& path) { mkfifo(path.c_str(), 0600); }), std::nullopt);
  EXPECT_EQ(testing_support::contentOf(other), "other content");
  EXPECT_FALSE(fs::exists(fs::symlink_status(_folder.pathOf("sample"))));
}

TEST_F(SampleFileTest, RefusesAFolderInWhichOthersCouldPutAFileInItsPlace) {
  fs::permissions(_folder.path(), fs::perms::all);
  EXPECT_EQ(SampleFile::create(_folder.path().string()).error().code, EPERM);
  fs::permissions(_folder.path(), fs::perms::owner_all | fs::perms::group_write);
  EXPECT_EQ(SampleFile::create(_folder.path().string()).error().code, EPERM);
  EXPECT_TRUE(fs::is_empty(_folder.path()));
  fs::permissions(_folder.path(), fs::perms::all | fs::perms::sticky_bit);
  EXPECT_TRUE(SampleFile::create(_folder.path().string()));
}

TEST_F(SampleFileTest, RefusesAFolderThatIsNotThere) {
  EXPECT_EQ(SampleFile::create(_folder.pathOf("none")).error().code, ENOENT);
  EXPECT_EQ(SampleFile::create(_folder.write("file", "")).error().code, ENOTDIR);
}

}  // namespace
}  // namespace quellin
