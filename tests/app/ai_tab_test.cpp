// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
#include "app/ui/settings/AITab.h"
#include "tests/app/EventWait.h"
#include "tests/app/ShownWidgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <deque>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using test::named;

/// The tab with a key store that answers when a test says so.
class AITabTest : public testing::Test {
protected:
    AITabTest()
    {
        for (const char* setting : {"aiProvider", "aiModel.anthropic", "aiModel.openAI"})
            Settings::shared().set(QString::fromLatin1(setting), QString());
        Settings::shared().set(settings::aiCommitPrompt, QString::fromLatin1(settings::aiCommitPrompt.fallback));
        Settings::shared().set(settings::aiEnabled, false);
        tab.show();
    }

    void answer(const std::optional<QString>& stored)
    {
        const auto found = std::move(reads.front());
        reads.pop_front();
        found(stored);
    }

    void finishSaving(bool isSaved)
    {
        const auto finished = std::move(saves.front());
        saves.pop_front();
        finished(isSaved);
    }

    void pick(int provider)
    {
        auto& picker = *named<QComboBox>(tab, u"Provider"_s);
        picker.setCurrentIndex(provider);
        Q_EMIT picker.activated(provider);
    }

    QString note() { return named<QLabel>(tab, u"API Key Note"_s)->text(); }

    std::deque<std::function<void(std::optional<QString>)>> reads;
    std::deque<std::function<void(bool)>> saves;
    QStringList sent;
    bool hasVariable = false;
    AITab tab{{{{u"anthropic"_s, u"A"_s, u"model-a"_s, u"A_KEY"_s}, {u"openAI"_s, u"O"_s, u"model-o"_s, u"O_KEY"_s}},
               [this](const QString& /*provider*/, auto found) { reads.push_back(std::move(found)); },
               [this](const QString& provider, const QString& typed, auto finished) {
                   sent << provider + u'=' + typed;
                   saves.push_back(std::move(finished));
               },
               [this](const QString& /*provider*/) { return hasVariable; }}};
    QLineEdit& key = *named<QLineEdit>(tab, u"API Key"_s);
};

const QString isStored = u"The key is stored in your keyring."_s;
const QString couldNot = u"The key could not be saved in the keyring."_s;

TEST_F(AITabTest, NoteSaysOnlyWhatIsKnown)
{
    EXPECT_EQ(note(), QString()); // nobody knows yet
    hasVariable = true;
    answer(std::nullopt);
    EXPECT_EQ(note(), u"Without a stored key, A_KEY from the environment is used."_s);
    QTest::keyClicks(&key, u"sk-1"_s);
    EXPECT_EQ(note(), QString());
    EXPECT_TRUE(sent.empty()) << "a save a key stroke";
    QTest::keyClick(&key, Qt::Key_Return);
    EXPECT_EQ(sent, QStringList{u"anthropic=sk-1"_s});
    EXPECT_EQ(note(), QString());
    finishSaving(true);
    EXPECT_EQ(note(), isStored);

    // Undoing goes back to the key that was found, here none; a rest is enough to have it saved.
    hasVariable = false;
    QTest::keyClick(&key, Qt::Key_Backspace);
    QTest::keyClick(&key, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(test::waitUntil([&] { return sent.size() == 2; }));
    EXPECT_EQ(sent.last(), u"anthropic="_s);
    finishSaving(true);
    EXPECT_EQ(note(), u"No key was found in your keyring."_s);
}

TEST_F(AITabTest, SlowAnswersNeitherOverwriteTypingNorShowUnderAnotherProvider)
{
    QTest::keyClicks(&key, u"sk-typed"_s);
    answer(u"sk-stored"_s);
    EXPECT_EQ(key.text(), u"sk-typed"_s);
    pick(1);
    EXPECT_EQ(sent, QStringList{u"anthropic=sk-typed"_s});
    EXPECT_EQ(key.text(), QString());
    pick(0);
    answer(u"sk-of-o"_s); // asked before
    EXPECT_EQ(key.text(), u"sk-typed"_s);
    finishSaving(true);
    answer(u"sk-typed"_s);
    EXPECT_EQ(note(), isStored);
    QTest::keyClick(&key, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&key, Qt::Key_Backspace);
    QTest::keyClick(&key, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(key.text(), u"sk-typed"_s) << "the key as it was when it was shown";
    QTest::keyClick(&key, Qt::Key_Return);
    EXPECT_EQ(sent.size(), 1);
}

TEST_F(AITabTest, WhatCouldNotBeSavedStaysAndIsTriedAgainWhenAskedFor)
{
    answer(std::nullopt);
    QTest::keyClicks(&key, u"sk-1"_s);
    tab.hide();
    EXPECT_EQ(sent.size(), 1);
    finishSaving(false);
    tab.show();
    answer(std::nullopt);
    EXPECT_EQ(key.text(), u"sk-1"_s);
    EXPECT_EQ(note(), couldNot);
    EXPECT_EQ(key.accessibleDescription(), couldNot);
    pick(1);
    answer(std::nullopt);
    EXPECT_NE(note(), couldNot);
    pick(0);
    EXPECT_EQ(key.text(), u"sk-1"_s);
    EXPECT_EQ(sent.size(), 1) << "each try may ask for a password";
    QTest::keyClick(&key, Qt::Key_Return);
    EXPECT_EQ(sent, QStringList({u"anthropic=sk-1"_s, u"anthropic=sk-1"_s}));
    finishSaving(true);
    EXPECT_EQ(note(), isStored);
}

TEST_F(AITabTest, SettingsTakeEverythingButTheKey)
{
    answer(u"sk-secret"_s);
    named<QCheckBox>(tab, u"Write Commit Messages with AI"_s)->click();
    EXPECT_TRUE(Settings::shared().value(settings::aiEnabled));
    auto& model = *named<QLineEdit>(tab, u"Model"_s);
    EXPECT_EQ(model.placeholderText(), u"model-a"_s);
    QTest::keyClicks(&model, u"mine"_s);
    pick(1);
    EXPECT_EQ(Settings::shared().value(settings::aiProvider), u"openAI"_s);
    EXPECT_EQ(model.text(), QString());
    EXPECT_EQ(model.placeholderText(), u"model-o"_s);
    EXPECT_EQ(Settings::shared().value(settings::aiModelAnthropic), u"mine"_s);

    auto& prompt = *named<QPlainTextEdit>(tab, u"Commit Message Prompt"_s);
    const QString usual = prompt.toPlainText();
    QTest::keyClicks(&prompt, u"Rhyme. "_s);
    EXPECT_EQ(Settings::shared().value(settings::aiCommitPrompt), u"Rhyme. "_s + usual);
    named<QPushButton>(tab, u"Reset Prompt"_s)->click();
    EXPECT_EQ(Settings::shared().value(settings::aiCommitPrompt), usual);
    prompt.undo();
    EXPECT_EQ(Settings::shared().value(settings::aiCommitPrompt), u"Rhyme. "_s + usual);

    Settings::shared().save();
    QFile file(Settings::shared().path());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.readAll().contains("sk-secret"));
}

} // namespace
} // namespace plovik
