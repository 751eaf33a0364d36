#include "app/controls/interface/InterfaceShortcuts.hpp"

#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

QByteArray file(const QByteArray &widgets)
{
    return "<ui><class>Sample</class><widget class=\"QWidget\" name=\"Sample\">" + widgets +
           "</widget></ui>";
}

QByteArray button(const QByteArray &name, const QByteArray &properties)
{
    return "<widget class=\"QPushButton\" name=\"" + name + "\">" + properties + "</widget>";
}

QByteArray shortcut(const QByteArray &keys)
{
    return "<property name=\"shortcut\"><string notr=\"true\">" + keys + "</string></property>";
}

/// A window with two buttons that have the keys of their texts.
struct Buttons {
    Buttons()
    {
        first->setObjectName(u"first"_s);
        second->setObjectName(u"second"_s);
    }

    QWidget root;
    QPushButton *first = new QPushButton(u"&First"_s, &root);
    QPushButton *second = new QPushButton(u"&Second"_s, &root);
};

TEST(InterfaceShortcuts, buttonsGetTheKeysOfTheFile)
{
    Buttons buttons;
    const InterfaceShortcuts shortcuts(
        file(button("first", shortcut("Ctrl+O")) + button("second", shortcut("\n Esc \n"))));
    shortcuts.applyTo(buttons.root);
    EXPECT_EQ(buttons.first->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_O));
    EXPECT_EQ(buttons.second->shortcut(), QKeySequence(Qt::Key_Escape));
}

TEST(InterfaceShortcuts, buttonWithoutKeysInTheFileKeepsThoseOfItsText)
{
    Buttons buttons;
    const InterfaceShortcuts shortcuts(
        file(button("first", "<property name=\"text\"><string>&amp;First</string></property>") +
             button("second", shortcut("Ctrl+S"))));
    shortcuts.applyTo(buttons.root);
    EXPECT_EQ(buttons.first->shortcut(), QKeySequence(Qt::ALT | Qt::Key_F));
    EXPECT_EQ(buttons.second->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
}

TEST(InterfaceShortcuts, topWidgetMayBeTheButton)
{
    QPushButton root;
    root.setObjectName(u"first"_s);
    const QByteArray alone = "<ui>" + button("first", shortcut("Ctrl+O")) + "</ui>";
    InterfaceShortcuts(alone).applyTo(root);
    EXPECT_EQ(root.shortcut(), QKeySequence(Qt::CTRL | Qt::Key_O));
}

TEST(InterfaceShortcuts, otherWidgetsActionsAndBadFilesAreLeftAlone)
{
    Buttons buttons;
    const QByteArray action = "<action name=\"first\">" + shortcut("Ctrl+A") + "</action>";
    const QByteArray broken = file(button("first", shortcut("Ctrl+O"))).chopped(3);
    for (const QByteArray &content :
         {QByteArray(), broken, file(button("nobody", shortcut("Ctrl+O"))),
          file(button("second", "") + action)}) {
        InterfaceShortcuts(content).applyTo(buttons.root);
        EXPECT_EQ(buttons.first->shortcut(), QKeySequence(Qt::ALT | Qt::Key_F))
            << content.constData();
        EXPECT_EQ(buttons.second->shortcut(), QKeySequence(Qt::ALT | Qt::Key_S))
            << content.constData();
    }
}

} // namespace
} // namespace tessaly
