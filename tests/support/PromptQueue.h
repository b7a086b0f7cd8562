#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "toolkit/user/CUserSide.h"

/// Plays the user: each message, question and dialog must come as it was announced, in its order. One that nobody
/// announced, and one that never came, fail the test. Waits are over at once, and time passes where a test says so.
class PromptQueue : public CUserSide
{
public:
    using AtDialog = std::function<void(QDialog&)>;

    PromptQueue() { s_S_Replace(this); }
    ~PromptQueue() override
    {
        s_S_Replace(nullptr);
        EXPECT_EQ(Left(), 0u) << "what never came, the first one: "
                              << (Left() ? vm_arExpected.front().sText.toStdString() : "");
    }
    PromptQueue(const PromptQueue&) = delete;
    PromptQueue& operator=(const PromptQueue&) = delete;

    /// Announces a message or a question; "" answers no.
    void Expect(const QString& sText, const QString& sCaption, const QString& sAnswer = "yes")
    {
        vm_arExpected.push_back({sText, sCaption, sAnswer, {}});
    }
    /// Announces a question that has No as its default.
    void ExpectToDestroy(const QString& sText, const QString& sCaption, const QString& sAnswer = "yes")
    {
        vm_arExpected.push_back({"No: " + sText, sCaption, sAnswer, {}});
    }
    /// Announces a question for a file that begins with `sProposed`; "" takes none.
    void ExpectFile(const QString& sProposed, const QString& sCaption, const QString& sAnswer)
    {
        vm_arExpected.push_back({"file: " + sProposed, sCaption, sAnswer, {}});
    }
    /// Announces a modal dialog, at which the function acts; one that it leaves open is rejected.
    void ExpectDialog(AtDialog fnAct) { vm_arExpected.push_back({"dialog", {}, {}, std::move(fnAct)}); }

    /// From now on time stands still but where `Pass` lets it go on.
    void HoldTime() { vm_bHeld = true; }
    void Pass(int nMs)
    {
        const std::uint64_t nEnd = vm_nNowMs + static_cast<std::uint64_t>(nMs);
        for (;;) {
            const auto it = std::min_element(vm_arCalls.begin(), vm_arCalls.end(),
                                             [](const auto& a, const auto& b) { return a.nAtMs < b.nAtMs; });
            if (it == vm_arCalls.end() || it->nAtMs > nEnd)
                break;
            const stDef_Call stCall = *it;
            vm_arCalls.erase(it);
            vm_nNowMs = stCall.nAtMs;
            if (stCall.pContext)
                stCall.fnCall();
        }
        vm_nNowMs = nEnd;
    }

    std::size_t Left() const { return vm_arExpected.size(); }
    /// The waits since the last call, in ms.
    std::vector<int> TakeWaits() { return std::exchange(vm_arWaits, {}); }

    /// What stood above the last one.
    const QString& WaitText() const { return vm_sWaitText; }

    bool m_F_b_Prompt(QWidget*, const stDef_Prompt& stPrompt) override
    {
        const bool bDestroys = stPrompt.nKind == stDef_Prompt::emDef_Kind::DestroyingChoice;
        return !Take((bDestroys ? "No: " : "") + stPrompt.sText, stPrompt.sCaption).sAnswer.isEmpty();
    }
    QString m_F_s_File(QWidget*, const stDef_FileQuestion& stQuestion) override
    {
        return Take("file: " + stQuestion.sProposed, stQuestion.sCaption).sAnswer;
    }
    int m_F_n_RunModal(QDialog& objDialog) override
    {
        const stDef_Expected stExpected = Take("dialog", {});
        QTimer::singleShot(0, &objDialog, [&] {
            if (stExpected.fnAct)
                stExpected.fnAct(objDialog);
            if (objDialog.isVisible())
                objDialog.done(QDialog::Rejected);
        });
        return objDialog.exec();
    }
    void m_S_Wait(QWidget*, const QString& sText, int nMs) override
    {
        vm_sWaitText = sText;
        vm_arWaits.push_back(nMs);
    }

    std::uint64_t m_F_n_TickMs() override { return vm_bHeld ? vm_nNowMs : CUserSide::m_F_n_TickMs(); }
    void m_S_After(int nMs, QObject* pContext, const std::function<void()>& fnCall) override
    {
        if (vm_bHeld)
            vm_arCalls.push_back({vm_nNowMs + static_cast<std::uint64_t>(nMs), pContext, fnCall});
        else
            CUserSide::m_S_After(nMs, pContext, fnCall);
    }

private:
    struct stDef_Call
    {
        std::uint64_t nAtMs;
        QPointer<QObject> pContext;
        std::function<void()> fnCall;
    };
    struct stDef_Expected
    {
        QString sText, sCaption, sAnswer;
        AtDialog fnAct;
    };

    stDef_Expected Take(const QString& sText, const QString& sCaption)
    {
        if (vm_arExpected.empty()) {
            ADD_FAILURE() << "nobody expects this: " << sText.toStdString();
            return {};
        }
        const stDef_Expected stExpected = vm_arExpected.front();
        vm_arExpected.pop_front();
        EXPECT_EQ(sText, stExpected.sText);
        EXPECT_EQ(sCaption, stExpected.sCaption);
        return stExpected;
    }

    std::deque<stDef_Expected> vm_arExpected;
    std::vector<int> vm_arWaits;
    QString vm_sWaitText;
    bool vm_bHeld = false;
    std::uint64_t vm_nNowMs = 1;
    std::vector<stDef_Call> vm_arCalls;
};
