#include "CRecorderStore.h"

#include <algorithm>

#include "host/Lib_Bedrock.h"

using namespace Qt::StringLiterals;

namespace {

const QString g_sList = u"/root/NVR"_s;

QString NodePath(int nNvrID)
{
    return QString::asprintf("/root/NVR/N%03d", nNvrID);
}

// The numbers of a card or of a stored recorder, with what is allowed.
struct stDef_NumberRow
{
    const char* pszKey;
    int nMin;
    int nMax;
    int nDefault;
};

constexpr stDef_NumberRow g_astNumbers[] = {
    {"Type", 0, 1, 1},       {"HttpPort", 1, 65535, 80}, {"RtspPort", 1, 65535, 554},
    {"StreamType", 0, 2, 1}, {"DstType", 0, 2, 0},       {"Channels", 1, CRecorderStore::MaxChannels, 4},
};

// A name of the form that stands in a URL as it is: no control characters, no blanks.
bool IsAddress(const QString& sText)
{
    return !sText.isEmpty() && std::none_of(sText.begin(), sText.end(),
                                            [](QChar c) { return c.unicode() <= ' ' || u"/@?#"_s.contains(c); });
}

} // namespace

struct CRecorderStore::stDef_Card
{
    QString sName;
    QString sAddress;
    QString sDips;
    QString sUser;
    QString sPassword;
    bool bPassword = false;
    int arNumbers[std::size(g_astNumbers)] = {};
};

CRecorderStore::CRecorderStore(CEnvObj* pEnv) : vm_pEnv(pEnv) {}

int CRecorderStore::m_F_n_Count() const
{
    return std::clamp(vm_pEnv->m_F_p_GetMemSysXML()->m_F_n_GetValueInt(g_sList, u"count"_s, 0), 0, MaxRecorders);
}

QList<stDef_Recorder> CRecorderStore::m_F_ar_Recorders() const
{
    const CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    QList<stDef_Recorder> arRecorders;
    for (int nNvrID = 0; nNvrID < m_F_n_Count(); ++nNvrID) {
        const QString sPath = NodePath(nNvrID);
        stDef_Recorder stRecorder;
        stRecorder.nNvrID = nNvrID;
        stRecorder.nType = objXml.m_F_n_GetValueInt(sPath, u"Type"_s, -1);
        if (stRecorder.nType < 0)
            continue;
        objXml.m_F_n_GetValue(sPath, u"IP"_s, stRecorder.sAddress, {});
        objXml.m_F_n_GetValue(sPath, u"Name"_s, stRecorder.sName, stRecorder.sAddress);
        stRecorder.nHttpPort = objXml.m_F_n_GetValueInt(sPath, u"HttpPort"_s, 80);
        stRecorder.nRtspPort = objXml.m_F_n_GetValueInt(sPath, u"RtspPort"_s, 554);
        stRecorder.nChannels = std::clamp(objXml.m_F_n_GetValueInt(sPath, u"Channels"_s, 4), 1, MaxChannels);
        arRecorders.append(stRecorder);
    }
    return arRecorders;
}

stDef_ImportResult CRecorderStore::m_F_o_Import(const QString& sFile)
{
    stDef_ImportResult stResult;
    CXmlObj objCards;
    if (!objCards.m_F_b_LoadXMLFile(sFile)) {
        stResult.sError = u"%1: no such file, or not a recorder card"_s.arg(sFile);
        return stResult;
    }
    QList<stDef_Card> arCards;
    CXmlNodeList objList = objCards.m_S_SelectNodesByKey(u"/root/Recorder"_s);
    for (CXmlNode objNode = objList.m_F_o_NextNode(); !objNode.m_F_b_IsNull(); objNode = objList.m_F_o_NextNode()) {
        stDef_Card stCard;
        const QString sError = s_F_s_ReadCard(objNode, stCard);
        if (!sError.isEmpty()) {
            stResult.sError = u"%1: recorder %2: %3"_s.arg(sFile).arg(arCards.size() + 1).arg(sError);
            return stResult;
        }
        arCards.append(stCard);
    }
    stResult.sError = arCards.isEmpty() ? u"no recorder in it"_s : m_F_s_Apply(arCards, stResult);
    if (!stResult.sError.isEmpty())
        stResult = {0, 0, u"%1: %2"_s.arg(sFile, stResult.sError)};
    return stResult;
}

QString CRecorderStore::s_F_s_ReadCard(const CXmlNode& objNode, stDef_Card& stCard)
{
    const auto Text = [&objNode](const QString& sKey) {
        QString sValue;
        CXmlObj::s_S_GetNodeVal(objNode, sKey, sValue, {});
        return sValue;
    };
    stCard.sAddress = Text(u"IP"_s).trimmed();
    stCard.sName = Text(u"Name"_s).trimmed();
    stCard.sDips = Text(u"DIPS"_s).trimmed();
    stCard.sUser = Text(u"UID"_s);
    stCard.sPassword = Text(u"ClearPWD"_s);
    stCard.bPassword = !stCard.sPassword.isEmpty();
    if (!IsAddress(stCard.sAddress))
        return u"no address in IP"_s;
    if (stCard.sUser.isEmpty())
        return u"no account in UID"_s;
    if (stCard.sName.isEmpty())
        stCard.sName = stCard.sAddress;
    for (std::size_t i = 0; i < std::size(g_astNumbers); ++i) {
        const stDef_NumberRow& stRow = g_astNumbers[i];
        const QString sKey = QString::fromLatin1(stRow.pszKey);
        const QString sValue = Text(sKey);
        bool bNumber = true;
        stCard.arNumbers[i] = sValue.isEmpty() ? stRow.nDefault : sValue.toInt(&bNumber);
        if (!bNumber || stCard.arNumbers[i] < stRow.nMin || stCard.arNumbers[i] > stRow.nMax)
            return u"%1 is no number from %2 to %3"_s.arg(sKey).arg(stRow.nMin).arg(stRow.nMax);
    }
    return {};
}

QString CRecorderStore::m_F_s_Apply(const QList<stDef_Card>& arCards, stDef_ImportResult& stResult)
{
    CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    const QString sBefore = objXml.m_F_s_GetXML();
    QString sError;
    for (const stDef_Card& stCard : arCards) {
        const QList<stDef_Recorder> arKnown = m_F_ar_Recorders();
        const auto pKnown = std::find_if(arKnown.begin(), arKnown.end(), [&stCard](const stDef_Recorder& stRecorder) {
            return stRecorder.sName == stCard.sName;
        });
        const bool bNew = pKnown == arKnown.end();
        const int nNvrID = bNew ? m_F_n_Count() : pKnown->nNvrID;
        sError = nNvrID < MaxRecorders ? m_F_s_Write(nNvrID, stCard) : u"the list is full"_s;
        if (!sError.isEmpty())
            break;
        ++(bNew ? stResult.nAdded : stResult.nUpdated);
    }
    if (sError.isEmpty() && !vm_pEnv->m_F_b_SaveSysXML())
        sError = u"the recorder list can't be saved"_s;
    if (!sError.isEmpty())
        objXml.m_F_b_LoadXML(sBefore);
    return sError;
}

QString CRecorderStore::m_F_s_Write(int nNvrID, const stDef_Card& stCard)
{
    CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    const QString sPath = NodePath(nNvrID);
    if (stCard.bPassword) {
        const QString sStored = CWinAES_CMS::s_F_s_Encrypt(stCard.sPassword);
        if (sStored.isEmpty())
            return u"no key to store a password with"_s;
        objXml.m_F_b_SetValue(sPath, u"PWD"_s, sStored);
    }
    objXml.m_F_b_SetValue(sPath, u"Name"_s, stCard.sName);
    objXml.m_F_b_SetValue(sPath, u"IP"_s, stCard.sAddress);
    objXml.m_F_b_SetValue(sPath, u"DIPS"_s, stCard.sDips);
    objXml.m_F_b_SetValue(sPath, u"UID"_s, stCard.sUser);
    for (std::size_t i = 0; i < std::size(g_astNumbers); ++i)
        objXml.m_F_b_SetValue(sPath, QString::fromLatin1(g_astNumbers[i].pszKey), stCard.arNumbers[i]);
    if (nNvrID >= m_F_n_Count())
        objXml.m_F_b_SetValue(g_sList, u"count"_s, nNvrID + 1);
    return {};
}

stDef_NvrInit CRecorderStore::m_F_o_InitRecord(int nNvrID) const
{
    const CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    const QString sPath = NodePath(nNvrID);
    const auto Narrow = [&](const QString& sKey) {
        QString sValue;
        objXml.m_F_n_GetValue(sPath, sKey, sValue, {});
        return CSFunc::s_F_s_UnicodeToAnsi(sValue);
    };
    QString sStored;
    objXml.m_F_n_GetValue(sPath, u"PWD"_s, sStored, {});
    stDef_NvrInit stInit;
    stInit.nNvrID = nNvrID;
    stInit.sIP = Narrow(u"IP"_s);
    stInit.sDips = Narrow(u"DIPS"_s);
    stInit.sUID = Narrow(u"UID"_s);
    stInit.sPWD = CSFunc::s_F_s_UnicodeToAnsi(CWinAES_CMS::s_F_s_Decrypt(sStored));
    stInit.nHttpPort = objXml.m_F_n_GetValueInt(sPath, u"HttpPort"_s, 80);
    stInit.nRtspPort = objXml.m_F_n_GetValueInt(sPath, u"RtspPort"_s, 554);
    stInit.bDips = objXml.m_F_n_GetValueInt(sPath, u"DstType"_s, 0) == 1;
    return stInit;
}
