// What tests of the screens take for granted of the fakes.

#include "tests/fakes/FakeServices.hpp"

#include <QWidget>

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tessaly {

namespace {

using Answers = std::vector<std::optional<std::string>>;

TEST(FakeFileManager, keepsWhatItWasToShow)
{
    FakeServices services;
    services.all().fileManager.reveal("/a\xFF");
    services.all().fileManager.reveal("/b");
    services.all().fileManager.showInformation("/c");
    EXPECT_EQ(services.fileManager.revealed(), (std::vector<std::string>{"/a\xFF", "/b"}));
    EXPECT_EQ(services.fileManager.informed(), std::vector<std::string>{"/c"});
}

TEST(FakeFolderChooser, answersWhenTheTestSays)
{
    FakeServices services;
    QWidget window;
    Answers answers;
    const auto keep = [&](const auto &answer) { answers.push_back(answer); };
    services.all().folderChooser.chooseFolder(window, {"/home", "Scan"}, keep);
    FakeFolderChooser &chooser = services.folderChooser;
    EXPECT_TRUE(answers.empty());
    EXPECT_TRUE(chooser.isOpen());
    ASSERT_EQ(chooser.asked().size(), 1U);
    EXPECT_EQ(chooser.asked()[0].window, &window);
    EXPECT_EQ(chooser.asked()[0].request.initialFolder, "/home");
    EXPECT_EQ(chooser.asked()[0].request.confirmTitle, "Scan");

    chooser.answer("/home/ada");
    EXPECT_EQ(answers, Answers{"/home/ada"});
    EXPECT_FALSE(chooser.isOpen());
    EXPECT_THROW(chooser.answer(std::nullopt), std::logic_error);
}

TEST(FakeFolderChooser, hasNothingForWhoAsksWhileItIsOpen)
{
    FakeFolderChooser chooser;
    QWidget window;
    Answers answers;
    const auto keep = [&](const auto &answer) { answers.push_back(answer); };
    chooser.chooseFolder(window, {}, keep);
    chooser.chooseFolder(window, {}, keep);
    EXPECT_EQ(chooser.asked().size(), 2U);
    chooser.answer("/home");
    EXPECT_EQ(answers, (Answers{std::nullopt, "/home"}));
}

} // namespace

} // namespace tessaly
