#include "platform/freedesktop/files/leftovers.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace {
std::size_t longestRead = SIZE_MAX;
bool knowsNoReplace = true;
} // namespace

// In place of the C library's, for what only a network file system does.
extern "C" ssize_t read(int file, void* buffer, size_t size)
{
    return ::syscall(SYS_read, file, buffer, std::min(size, longestRead));
}
extern "C" int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                         unsigned flags) noexcept
{
    if (flags != 0 && !knowsNoReplace) {
        errno = EINVAL;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

namespace brevlin {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const std::string& path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & mode_t{07777} : 0;
}

void put(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::size_t entryCount(const std::string& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

class PosixDurableFileTest : public testing::Test
{
protected:
    test::TemporaryFolder m_folder;
    PosixDurableFile m_files;
};

TEST_F(PosixDurableFileTest, creates_private_files_in_private_folders)
{
    const std::string path = m_folder.path("a/b/file.json");
    EXPECT_EQ(*m_files.read(path), std::nullopt);
    EXPECT_FALSE(m_files.exists(path));
    EXPECT_TRUE(m_files.remove(path)) << "there is nothing to remove";
    EXPECT_FALSE(m_files.remove(m_folder.path()));
    ASSERT_TRUE(m_files.write(path, std::string("nul\0byte", 8)));
    EXPECT_EQ(*m_files.read(path), std::string("nul\0byte", 8));
    EXPECT_EQ(modeOf(path), mode_t{0600});
    EXPECT_EQ(modeOf(m_folder.path("a")), mode_t{0700});
    EXPECT_EQ(modeOf(m_folder.path("a/b")), mode_t{0700});
    EXPECT_EQ(entryCount(m_folder.path("a/b")), 1U) << "the temporary file is gone";
}

TEST_F(PosixDurableFileTest, an_existing_file_is_read_whole_and_keeps_its_mode)
{
    const std::string path = m_folder.path("file");
    put(path, "more than one piece");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    longestRead = 4;
    EXPECT_EQ(*m_files.read(path), "more than one piece");
    longestRead = SIZE_MAX;
    ASSERT_TRUE(m_files.write(path, "new"));
    EXPECT_EQ(modeOf(path), mode_t{0640});
    EXPECT_EQ(*m_files.read(path), "new");
}

TEST_F(PosixDurableFileTest, replaces_only_the_content_that_the_caller_knows)
{
    const std::string path = m_folder.path("file");
    const auto first = m_files.replace(path, "first", std::nullopt);
    ASSERT_TRUE(first);
    EXPECT_EQ(m_files.replace(path, "blind", std::nullopt).error().code, ESTALE);
    const auto second = m_files.replace(path, "second", *first);
    ASSERT_TRUE(second);
    EXPECT_EQ(**m_files.stamp(path), *second);
    EXPECT_EQ((*m_files.readStamped(path))->stamp, *second);
    put(path, "theirs");
    EXPECT_EQ(m_files.replace(path, "late", *second).error().code, ESTALE);
    EXPECT_EQ(*m_files.read(path), "theirs");
    EXPECT_EQ(entryCount(m_folder.path()), 1U) << "the temporary file is gone";
}

TEST_F(PosixDurableFileTest, pieces_become_a_file_only_when_all_have_come)
{
    const std::string path = m_folder.path("made/file");
    const std::string piece(3'000'000, 'x');
    const auto produce = [&piece](bool result) {
        return [&piece, result](const PieceSink& take) {
            return take(piece) && take("end") && result;
        };
    };
    EXPECT_EQ(m_files.writePieces(path, produce(false)).error().code, ECANCELED);
    EXPECT_EQ(entryCount(m_folder.path("made")), 0U) << "nothing is left of a content that broke off";
    const auto stamp = m_files.writePieces(path, produce(true));
    ASSERT_TRUE(stamp);
    EXPECT_EQ(**m_files.stamp(path), *stamp);
    EXPECT_EQ(*m_files.read(path), piece + "end");

    struct rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = before;
    small.rlim_cur = 1'000'000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    bool wantsMore = true;
    const auto refused = m_files.writePieces(path, [&](const PieceSink& take) {
        wantsMore = take(piece);
        return true;
    });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(refused.error().code, EFBIG);
    EXPECT_FALSE(wantsMore);
    EXPECT_EQ(*m_files.read(path), piece + "end");
    EXPECT_EQ(entryCount(m_folder.path("made")), 1U) << "the temporary file is gone";
}

TEST_F(PosixDurableFileTest, a_new_start_stands_before_what_stays_of_the_file)
{
    const std::string path = m_folder.path("file");
    std::string content(9'000'001, 'x'); // the disk is asked to begin twice
    content.replace(0, 3, "old");
    const auto first = m_files.write(path, content);
    ASSERT_TRUE(first);
    const auto second = m_files.replaceStart(path, "the new", 3, *first);
    ASSERT_TRUE(second);
    EXPECT_EQ(m_files.replaceStart(path, "late", 3, *first).error().code, ESTALE);
    EXPECT_EQ(entryCount(m_folder.path()), 1U) << "the temporary file is gone";
    std::string read;
    const auto stamp = m_files.readPieces(path, [&read](std::string_view piece) {
        read += piece;
        return true;
    });
    EXPECT_EQ(**stamp, *second);
    EXPECT_TRUE(read == content.replace(0, 3, "the new"));
}

TEST_F(PosixDurableFileTest, a_symbolic_link_is_followed_and_stays)
{
    fs::create_directory(m_folder.path("elsewhere"));
    const std::string link = m_folder.path("link");
    fs::create_symlink("middle", link);
    fs::create_symlink("elsewhere/target", m_folder.path("middle"));
    ASSERT_TRUE(m_files.write(link, "through a dangling link"));
    ASSERT_TRUE(m_files.write(link, "through a good one"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(*m_files.read(m_folder.path("elsewhere/target")), "through a good one");
    ASSERT_TRUE(m_files.remove(link));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(*m_files.read(link), std::nullopt);
}

TEST_F(PosixDurableFileTest, what_is_not_a_file_is_neither_read_nor_replaced)
{
    fs::create_directory(m_folder.path("folder"));
    ASSERT_EQ(::mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    fs::create_symlink("other", m_folder.path("ring"));
    fs::create_symlink("ring", m_folder.path("other"));
    for (const auto& [name, code] :
         {std::pair{"folder", EISDIR}, std::pair{"pipe", EINVAL}, std::pair{"ring", ELOOP}}) {
        const std::string path = m_folder.path(name);
        const auto content = m_files.read(path);
        const auto written = m_files.write(path, "x");
        ASSERT_FALSE(content) << name;
        ASSERT_FALSE(written) << name;
        EXPECT_EQ(content.error().code, code);
        EXPECT_EQ(written.error().code, code);
        EXPECT_NE(content.error().description.find(path), std::string::npos);
    }
    EXPECT_EQ(entryCount(m_folder.path()), 4U);
}

TEST_F(PosixDurableFileTest, a_full_disk_leaves_the_old_bytes_and_no_temporary_file)
{
    const std::string path = m_folder.path("file");
    ASSERT_TRUE(m_files.write(path, "old"));
    struct rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    // The first write is cut short at the limit, the next one fails.
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = before;
    limit.rlim_cur = 100'000;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto written = m_files.write(path, std::string(200'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().operation, "write");
    EXPECT_EQ(written.error().code, EFBIG);
    EXPECT_EQ(*m_files.read(path), "old");
    EXPECT_EQ(entryCount(m_folder.path()), 1U);
}

TEST_F(PosixDurableFileTest, a_folder_without_write_permission_is_an_error)
{
    const std::string path = m_folder.path("file");
    ASSERT_TRUE(m_files.write(path, "old"));
    ASSERT_EQ(::chmod(m_folder.path().c_str(), 0555), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const bool isRoot = ::geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(::seteuid(65534), 0); // root reads and writes everything
    }
    const auto content = m_files.read(path);
    const auto written = m_files.write(m_folder.path("new"), "x");
    const auto created = m_files.write(m_folder.path("sub/new"), "x");
    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
    ASSERT_EQ(::chmod(m_folder.path().c_str(), 0755), 0);
    ASSERT_FALSE(content);
    ASSERT_FALSE(written);
    ASSERT_FALSE(created);
    EXPECT_EQ(content.error().code, EACCES);
    EXPECT_EQ(written.error().code, EACCES);
    EXPECT_EQ(created.error().operation, "mkdir");
}

TEST_F(PosixDurableFileTest, renaming_replaces_nothing)
{
    for (const bool knows : {true, false}) {
        knowsNoReplace = knows;
        put(m_folder.path("from"), "new");
        put(m_folder.path("taken"), "old");
        const auto refused = m_files.rename(m_folder.path("from"), m_folder.path("taken"));
        ASSERT_FALSE(refused);
        EXPECT_EQ(refused.error().code, EEXIST);
        EXPECT_EQ(*m_files.read(m_folder.path("taken")), "old");
        ASSERT_TRUE(m_files.rename(m_folder.path("from"), m_folder.path("free")));
        EXPECT_EQ(*m_files.read(m_folder.path("free")), "new");
        const auto missing = m_files.rename(m_folder.path("from"), m_folder.path("other"));
        ASSERT_FALSE(missing);
        EXPECT_EQ(missing.error().code, ENOENT);
        fs::remove(m_folder.path("free"));
    }
    knowsNoReplace = true;
}

TEST_F(PosixDurableFileTest, leftovers_of_a_crash_are_removed_and_nothing_else)
{
    fs::create_directory(m_folder.path("data"));
    fs::create_directory(m_folder.path("linked"));
    put(m_folder.path("data/" + makeTemporaryName()), "half a docu");
    put(m_folder.path("linked/" + makeTemporaryName()), "half a docu");
    fs::create_symlink("../linked/file", m_folder.path("data/link"));
    fs::create_directory(m_folder.path("data/" + makeTemporaryName()));
    for (const char* name : {"data/sessions-v1.json", "data/.brevlin-notes.tmp", "linked/file"}) {
        put(m_folder.path(name), "the user's");
    }
    EXPECT_EQ(removeLeftovers(m_folder.path("data")), 2U);
    EXPECT_EQ(entryCount(m_folder.path("data")), 4U);
    EXPECT_EQ(entryCount(m_folder.path("linked")), 1U);
    EXPECT_EQ(removeLeftovers(m_folder.path("no such folder")), 0U);
}

} // namespace
} // namespace brevlin
