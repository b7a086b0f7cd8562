#pragma once

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "CVirtualNvr.h"
#include "fleetlink/fleetlink.h"
#include "http/CFaultTable.h"
#include "http/CRequestLog.h"
#include "rtsp/CStreamServer.h"

/// A host with a configuration folder of its own and a virtual recorder, whose node in the recorder list is N007.
class HostFixture : public testing::Test
{
protected:
    static constexpr int NvrID = 7;
    static constexpr const char* User = "admin";
    static constexpr const char* Password = "Fl33t!ink";

    void SetUp() override
    {
        ASSERT_TRUE(vm_dirConfig.isValid());
        ASSERT_TRUE(vm_env.m_F_b_Init(vm_dirConfig.path()));
        CWinAES_CMS::s_S_SetKeyFolder(vm_dirConfig.path());
    }

    void StartRecorder(stDef_VirtualNvrConfig stConfig)
    {
        std::string sError;
        ASSERT_TRUE(vm_nvr.m_F_b_Start(stConfig, sError)) << sError;
        SetNode("Type", stConfig.bPC ? "0" : "1");
        SetNode("IP", "127.0.0.1");
        SetNode("UID", User);
        SetNode("PWD", CWinAES_CMS::s_F_s_Encrypt(Password));
        SetNode("HttpPort", QString::number(vm_nvr.m_F_n_HttpPort()));
        SetNode("RtspPort", QString::number(vm_nvr.m_F_n_RtspPort()));
    }

    void SetNode(const char* pKey, const QString& sValue)
    {
        vm_env.m_F_p_GetMemSysXML()->m_F_b_SetValue("/root/NVR/N007", pKey, sValue);
    }

    stDef_NvrInit Init() const
    {
        stDef_NvrInit stInit;
        stInit.nNvrID = NvrID;
        stInit.sIP = "127.0.0.1";
        stInit.sUID = User;
        stInit.sPWD = Password;
        stInit.nHttpPort = vm_nvr.m_F_n_HttpPort();
        return stInit;
    }

    QTemporaryDir vm_dirConfig;
    CEnvObj vm_env;
    CVirtualNvr vm_nvr;
};
