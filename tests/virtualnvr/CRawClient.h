#pragma once

#include "http/CHttpHead.h"
#include "http/CSocket.h"

#include <cerrno>
#include <gtest/gtest.h>

/// A client that puts bytes on the wire as they are given and shows what comes back.
class CRawClient
{
public:
    static constexpr int LimitMs = 10000;

    explicit CRawClient(int nPort)
    {
        EXPECT_TRUE(vm_objSocket.m_F_b_Open() && vm_objSocket.m_F_b_ConnectLoopback(nPort));
    }

    bool m_F_b_Send(std::string_view sData) { return vm_objSocket.m_F_b_Write(sData); }

    /// Reads until the bytes hold `sMark`; also ends when the connection does or nothing came for so long.
    std::string m_F_s_ReadUntil(std::string_view sMark, int nQuietMs = LimitMs, std::size_t nMax = 8u << 20)
    {
        std::string sAll = std::exchange(vm_sRead, {});
        std::string sPiece(64u << 10, 0);
        while (sMark.empty() || sAll.find(sMark, sAll.size() - std::min(sAll.size(), vm_nTail)) == sAll.npos) {
            if (sAll.size() >= nMax)
                break;
            errno = 0;
            const long nRead = vm_objSocket.m_F_n_Read(sPiece.data(), sPiece.size(), nQuietMs);
            vm_bClosed = nRead == 0;
            vm_bReset = nRead < 0 && errno == ECONNRESET;
            if (nRead <= 0)
                break;
            vm_nTail = static_cast<std::size_t>(nRead) + sMark.size();
            sAll.append(sPiece, 0, static_cast<std::size_t>(nRead));
        }
        return sAll;
    }
    std::string m_F_s_ReadToEnd() { return m_F_s_ReadUntil({}); }

    /// One whole reply, head and body as they came.
    std::string m_F_s_ReadReply(std::string_view sMethod = "GET")
    {
        std::string sAll = m_F_s_ReadUntil("\r\n\r\n");
        const std::size_t nHead = std::min(sAll.find("\r\n\r\n"), sAll.size() - 4) + 4;
        CHttpHead objHead;
        EXPECT_TRUE(objHead.m_F_b_Parse(std::string_view(sAll).substr(0, nHead))) << sAll;
        CBodyFramer objFramer(objHead, sMethod);
        std::size_t nEnd = nHead + objFramer.m_F_n_Feed(std::string_view(sAll).substr(nHead));
        std::string sPiece(64u << 10, 0);
        while (!objFramer.m_F_b_Done()) {
            const long nRead = vm_objSocket.m_F_n_Read(sPiece.data(), sPiece.size(), LimitMs);
            if (nRead <= 0)
                break;
            sAll.append(sPiece, 0, static_cast<std::size_t>(nRead));
            nEnd += objFramer.m_F_n_Feed(std::string_view(sPiece).substr(0, static_cast<std::size_t>(nRead)));
        }
        vm_sRead = sAll.substr(nEnd);
        return sAll.substr(0, nEnd);
    }
    std::string m_F_s_Get(const std::string& sTarget, const std::string& sLines = {})
    {
        m_F_b_Send("GET " + sTarget + " HTTP/1.1\r\nHost: h\r\n" + sLines + "\r\n");
        return m_F_s_ReadReply();
    }

    bool m_F_b_Closed() const { return vm_bClosed; }
    bool m_F_b_WasReset() const { return vm_bReset; }

private:
    CSocket vm_objSocket;
    std::string vm_sRead; ///< behind the last reply
    std::size_t vm_nTail = 0;
    bool vm_bClosed = false, vm_bReset = false;
};
