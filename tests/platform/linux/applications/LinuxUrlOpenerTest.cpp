#include "platform/linux/applications/LinuxUrlOpener.hpp"

#include "tests/platform/linux/LoggedWarnings.hpp"
#include "tests/platform/linux/WaitUntil.hpp"
#include "tests/platform/linux/applications/MadeDesktop.hpp"

#include <QUrl>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using Lines = std::vector<std::string>;

class LinuxUrlOpenerTest : public testing::Test {
protected:
    /// The address that the desktop is given; the log's line when it is given none.
    std::string opened(const std::string &url)
    {
        m_opened.clear();
        const LoggedWarnings log;
        m_opener.openUrl(url);
        waitUntil([&] { return !m_opened.empty() || !log.lines().empty(); });
        return m_opened.empty() ? log.lines().front() : m_opened;
    }

    MadeDesktop m_desktop;
    std::string m_opened;
    bool m_canOpen = true;
    LinuxUrlOpener m_opener{[this](const QUrl &url) {
        if (m_canOpen) {
            m_opened = url.toEncoded().toStdString();
        }
        return m_canOpen;
    }};
};

TEST_F(LinuxUrlOpenerTest, opensPagesAndMail)
{
    m_desktop.install("browser", "MimeType=x-scheme-handler/http;x-scheme-handler/https;\n");
    m_desktop.install("mail");
    m_desktop.write("config/mimeapps.list",
                    "[Default Applications]\nx-scheme-handler/mailto=mail.desktop\n");
    for (const char *url : {"https://example.com/a%20b?c=d#e", "http://example.com",
                            "mailto:ada@example.com?subject=Hello%20there"}) {
        EXPECT_EQ(opened(url), url);
    }
}

TEST_F(LinuxUrlOpenerTest, opensStoreLinksAsOurPageInTheSoftwareCentre)
{
    m_desktop.install("centre", "MimeType=x-scheme-handler/appstream;\n");
    for (const char *url :
         {"macappstore://store.example/app/id1234567890", "macappstore://store.example/1234?mt=12",
          "macappstore://store.example/de/app/tessaly/id12/", "macappstore:12",
          "macappstore://store.example/app/id12?action=write-review"}) {
        EXPECT_EQ(opened(url), "appstream:io.tessaly.Tessaly") << url;
    }
}

TEST_F(LinuxUrlOpenerTest, opensNothingElse)
{
    m_desktop.install("all", "MimeType=x-scheme-handler/file;x-scheme-handler/ftp;"
                             "x-scheme-handler/appstream;x-scheme-handler/https;\n");
    for (const char *url :
         {"", "example.com", "file:///etc/passwd", "ftp://example.com", "javascript:alert(1)",
          "https:", "https:///path", "mailto:", "https://exa mple.com", "https://[", "\xFF",
          "macappstore:", "macappstore://store.example", "macappstore://store.example/app/",
          "appstream:other", "/usr/bin/true"}) {
        EXPECT_TRUE(opened(url).ends_with("not an address that this program opens")) << url;
    }
}

TEST_F(LinuxUrlOpenerTest, logsThatNothingIsInstalledForIt)
{
    EXPECT_EQ(opened("https://example.com/"), "tessaly.urls: https://example.com/ not opened: "
                                              "no program for such addresses is installed");
    for (const char *url : {"mailto:ada@example.com", "macappstore://store.example/id12"}) {
        EXPECT_TRUE(opened(url).ends_with("no program for such addresses is installed")) << url;
    }
}

TEST_F(LinuxUrlOpenerTest, tellsWhetherSomethingOpensAnAddress)
{
    const auto canOpen = [this](const char *url) {
        std::optional<bool> answer;
        m_opener.canOpenUrl(url, [&answer](bool can) { answer = can; });
        EXPECT_FALSE(answer) << "it is answered later";
        waitUntil([&] { return answer.has_value(); });
        return *answer;
    };
    const char *const storePage = "macappstore://store.example/id12";
    EXPECT_FALSE(canOpen(storePage));
    EXPECT_FALSE(canOpen("https://example.com/"));
    m_desktop.install("centre", "MimeType=x-scheme-handler/appstream;\n");
    EXPECT_TRUE(canOpen(storePage));
    EXPECT_FALSE(canOpen("https://example.com/"));
    EXPECT_FALSE(canOpen("appstream:other"));
    EXPECT_EQ(m_opened, "");
}

TEST_F(LinuxUrlOpenerTest, findsBrowsersByVariableAndAlternative)
{
    const std::string page = "https://example.com/";
    {
        const ScopedVariable browser("BROWSER", "some-browser");
        EXPECT_EQ(opened(page), page);
        EXPECT_NE(opened("mailto:ada@example.com"), "mailto:ada@example.com");
    }
    EXPECT_NE(opened(page), page);
    m_desktop.addProgram("x-www-browser");
    EXPECT_EQ(opened(page), page);
}

TEST_F(LinuxUrlOpenerTest, logsThatTheDesktopRefuses)
{
    m_desktop.install("browser", "MimeType=x-scheme-handler/https;\n");
    m_canOpen = false;
    EXPECT_EQ(opened("https://example.com/"),
              "tessaly.urls: https://example.com/ not opened: the desktop refused");
}

TEST_F(LinuxUrlOpenerTest, mayBeDestroyedAtAnyMoment)
{
    m_desktop.install("browser", "MimeType=x-scheme-handler/https;\n");
    for (int round = 0; round < 20; ++round) {
        LinuxUrlOpener opener([](const QUrl & /*url*/) { return true; });
        opener.openUrl("https://example.com/");
        for (int events = 0; events < round; ++events) {
            QCoreApplication::processEvents();
        }
    }
}

} // namespace
} // namespace tessaly
