#pragma once

#include <deque>
#include <gtest/gtest.h>

#include "toolkit/CPrompts.h"

/// Answers the library's prompts in the user's place: each must come as it was announced, in its order. A prompt that
/// nobody announced, and one that never came, fail the test.
class PromptQueue
{
public:
    PromptQueue()
    {
        CPrompts::s_S_SetAnswerer([this](const stDef_Prompt& stPrompt) { return Answer(stPrompt); });
    }
    ~PromptQueue()
    {
        CPrompts::s_S_SetAnswerer({});
        EXPECT_EQ(vm_arExpected.size(), 0u) << "prompts that never came, the first one: "
                                            << (vm_arExpected.empty() ? "" : vm_arExpected.front().sText.toStdString());
    }
    PromptQueue(const PromptQueue&) = delete;
    PromptQueue& operator=(const PromptQueue&) = delete;

    void Expect(const QString& sText, const QString& sCaption, const QString& sAnswer = "yes")
    {
        vm_arExpected.push_back({sText, sCaption, sAnswer});
    }

private:
    struct stDef_Expected
    {
        QString sText, sCaption, sAnswer;
    };

    QString Answer(const stDef_Prompt& stPrompt)
    {
        if (vm_arExpected.empty()) {
            ADD_FAILURE() << "a prompt that nobody expects: " << stPrompt.sText.toStdString();
            return {};
        }
        const stDef_Expected stExpected = vm_arExpected.front();
        vm_arExpected.pop_front();
        EXPECT_EQ(stPrompt.sText, stExpected.sText);
        EXPECT_EQ(stPrompt.sCaption, stExpected.sCaption);
        return stExpected.sAnswer;
    }

    std::deque<stDef_Expected> vm_arExpected;
};
