#include "recorders/CRecorderStore.h"

#include <algorithm>
#include <variant>

#include "fleetlink/fleetlink.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

using enum emDef_RecorderField;

const QString g_sList = u"/root/NVR"_s;

QString NodeName(int nNvrID)
{
    return QString::asprintf("N%03d", nNvrID);
}

QString NodePath(int nNvrID)
{
    return g_sList + u'/' + NodeName(nNvrID);
}

/// A value of a recorder: its attribute, its field of the form, and for a number what it may be.
struct stDef_FieldRow
{
    const char* pszKey;
    emDef_RecorderField nField;
    std::variant<QString stDef_RecorderForm::*, int stDef_RecorderForm::*> pValue;
    int nMin = 0;
    int nMax = 0;
};

// The defaults are those of the form. The password is none of them: it is stored in another form than it is given in.
constexpr stDef_FieldRow g_astFields[] = {
    {"Name", Name, &stDef_RecorderForm::sName},
    {"IP", Address, &stDef_RecorderForm::sAddress},
    {"DIPS", Dips, &stDef_RecorderForm::sDips},
    {"UID", User, &stDef_RecorderForm::sUser},
    {"Type", Type, &stDef_RecorderForm::nType, 0, 1},
    {"HttpPort", HttpPort, &stDef_RecorderForm::nHttpPort, 1, 65535},
    {"RtspPort", RtspPort, &stDef_RecorderForm::nRtspPort, 1, 65535},
    {"StreamType", StreamType, &stDef_RecorderForm::nStreamType, 0, 2},
    {"DstType", DstType, &stDef_RecorderForm::nDstType, 0, 2},
    {"Channels", Channels, &stDef_RecorderForm::nChannels, 1, CRecorderStore::MaxChannels},
};

QString Key(const char* pszKey)
{
    return QString::fromLatin1(pszKey);
}

// A host that stands in a URL as it is. One colon is a port that went into the wrong field; more are an IPv6 address.
bool IsAddress(const QString& sText)
{
    return !sText.isEmpty() && sText.count(u':') != 1 && std::none_of(sText.begin(), sText.end(), [](QChar c) {
        return c.unicode() <= ' ' || c.unicode() == 0x7f || u"/@?#\\"_s.contains(c);
    });
}

QString FieldKey(emDef_RecorderField nField)
{
    for (const stDef_FieldRow& stRow : g_astFields) {
        if (stRow.nField == nField)
            return Key(stRow.pszKey);
    }
    return {};
}

stDef_RecorderForm Tidy(stDef_RecorderForm stForm)
{
    stForm.sAddress = stForm.sAddress.trimmed();
    stForm.sDips = stForm.sDips.trimmed();
    stForm.sName = stForm.sName.trimmed();
    if (stForm.sName.isEmpty())
        stForm.sName = stForm.sAddress.isEmpty() ? stForm.sDips : stForm.sAddress;
    return stForm;
}

void SetText(QString& sValue, const QString& sText)
{
    sValue = sText;
}

void SetText(int& nValue, const QString& sText)
{
    if (!sText.isEmpty())
        nValue = CXmlObj::s_F_n_ToInt(sText);
}

// `fnText` reads an attribute, which is empty where it isn't there.
template <class TText>
void Fill(stDef_RecorderForm& stForm, const TText& fnText)
{
    for (const stDef_FieldRow& stRow : g_astFields)
        std::visit([&](auto pValue) { SetText(stForm.*pValue, fnText(Key(stRow.pszKey))); }, stRow.pValue);
}

// Reads a card; what is wrong with it comes back, empty if nothing is.
QString ReadCard(const CXmlNode& objNode, stDef_RecorderForm& stForm)
{
    const auto Text = [&objNode](const QString& sKey) {
        QString sValue;
        CXmlObj::s_S_GetNodeVal(objNode, sKey, sValue, {});
        return sValue;
    };
    Fill(stForm, Text);
    stForm.sPassword = Text(u"ClearPWD"_s);
    stForm = Tidy(stForm);
    const QList<stDef_FormFault> arFaults = CRecorderStore::s_F_ar_Faults(stForm);
    return arFaults.isEmpty() ? QString() : u"%1: %2"_s.arg(FieldKey(arFaults[0].nField), arFaults[0].sText);
}

} // namespace

QString stDef_ImportResult::m_F_s_Text() const
{
    return sError.isEmpty() ? Tr(nsHost::Imported).arg(arAdded.size()).arg(arUpdated.size()) : sError;
}

CRecorderStore::CRecorderStore(CEnvObj* pEnv) : vm_pEnv(pEnv) {}

int CRecorderStore::m_F_n_Count() const
{
    return std::clamp(vm_pEnv->m_F_p_GetMemSysXML()->m_F_n_GetValueInt(g_sList, u"count"_s, 0), 0, MaxRecorders);
}

bool CRecorderStore::m_F_b_Known(int nNvrID) const
{
    return nNvrID >= 0 && nNvrID < m_F_n_Count() &&
           vm_pEnv->m_F_p_GetMemSysXML()->m_F_n_GetValueInt(NodePath(nNvrID), u"Type"_s, -1) >= 0;
}

int CRecorderStore::m_F_n_FreeNumber() const
{
    int nNvrID = 0;
    while (nNvrID < MaxRecorders && m_F_b_Known(nNvrID))
        ++nNvrID;
    return nNvrID;
}

QList<stDef_Recorder> CRecorderStore::m_F_ar_Recorders() const
{
    QList<stDef_Recorder> arRecorders;
    for (int nNvrID = 0; nNvrID < m_F_n_Count(); ++nNvrID) {
        if (!m_F_b_Known(nNvrID))
            continue;
        const stDef_RecorderForm stForm = m_F_o_Form(nNvrID);
        arRecorders.append({nNvrID, stForm.sName, stForm.sAddress, stForm.nType, stForm.nHttpPort, stForm.nRtspPort,
                            std::clamp(stForm.nChannels, 1, MaxChannels), stForm.nStreamType, stForm.nDstType});
    }
    return arRecorders;
}

stDef_RecorderForm CRecorderStore::m_F_o_Form(int nNvrID) const
{
    const CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    const QString sPath = NodePath(nNvrID);
    stDef_RecorderForm stForm;
    Fill(stForm, [&](const QString& sKey) { return objXml.m_F_s_Value(sPath, sKey); });
    return Tidy(stForm);
}

QList<stDef_FormFault> CRecorderStore::s_F_ar_Faults(const stDef_RecorderForm& stForm)
{
    QList<stDef_FormFault> arFaults;
    const bool bDips = stForm.nDstType == 1;
    if (stForm.sAddress.trimmed().isEmpty() ? !bDips : !IsAddress(stForm.sAddress.trimmed()))
        arFaults.append({Address, Tr(nsHost::FaultAddress)});
    if (bDips && !IsAddress(stForm.sDips.trimmed()))
        arFaults.append({Dips, Tr(nsHost::FaultDips)});
    if (stForm.sUser.isEmpty())
        arFaults.append({User, Tr(nsHost::FaultUser)});
    for (const stDef_FieldRow& stRow : g_astFields) {
        const auto* const pNumber = std::get_if<int stDef_RecorderForm::*>(&stRow.pValue);
        if (pNumber && (stForm.**pNumber < stRow.nMin || stForm.**pNumber > stRow.nMax))
            arFaults.append({stRow.nField, Tr(nsHost::FaultNumber).arg(stRow.nMin).arg(stRow.nMax)});
    }
    return arFaults;
}

template <class TChange>
QString CRecorderStore::m_F_s_Change(TChange objChange)
{
    CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    const QString sBefore = objXml.m_F_s_GetXML();
    QString sError = objChange();
    if (sError.isEmpty() && !vm_pEnv->m_F_b_SaveSysXML())
        sError = Tr(nsHost::FaultSave);
    if (!sError.isEmpty())
        objXml.m_F_b_LoadXML(sBefore);
    return sError;
}

stDef_AddResult CRecorderStore::m_F_o_Add(const stDef_RecorderForm& stForm)
{
    const int nNvrID = m_F_n_FreeNumber();
    const QString sError = m_F_s_Change([&] { return m_F_s_Write(nNvrID, stForm); });
    return {sError.isEmpty() ? nNvrID : -1, sError};
}

QString CRecorderStore::m_F_s_Edit(int nNvrID, const stDef_RecorderForm& stForm)
{
    if (!m_F_b_Known(nNvrID))
        return Tr(nsHost::FaultGone);
    return m_F_s_Change([&] { return m_F_s_Write(nNvrID, stForm); });
}

QString CRecorderStore::m_F_s_Remove(int nNvrID)
{
    if (!m_F_b_Known(nNvrID))
        return Tr(nsHost::FaultGone);
    return m_F_s_Change([&] {
        CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
        objXml.m_F_b_RemoveNods(g_sList, NodeName(nNvrID));
        int nCount = m_F_n_Count();
        while (nCount > 0 && !m_F_b_Known(nCount - 1))
            --nCount;
        objXml.m_F_b_SetValue(g_sList, u"count"_s, nCount);
        return QString();
    });
}

int CRecorderStore::m_F_n_Twin(const stDef_RecorderForm& stForm, int nExceptNvrID) const
{
    const QString sAddress = stForm.sAddress.trimmed();
    for (const stDef_Recorder& stRecorder : m_F_ar_Recorders()) {
        if (stRecorder.nNvrID != nExceptNvrID && stRecorder.nHttpPort == stForm.nHttpPort && !sAddress.isEmpty() &&
            stRecorder.sAddress.compare(sAddress, Qt::CaseInsensitive) == 0)
            return stRecorder.nNvrID;
    }
    return -1;
}

stDef_ImportResult CRecorderStore::m_F_o_Import(const QString& sFile)
{
    stDef_ImportResult stResult;
    CXmlObj objCards;
    if (!objCards.m_F_b_LoadXMLFile(sFile)) {
        stResult.sError = u"%1: no such file, or not a recorder card"_s.arg(sFile);
        return stResult;
    }
    QList<stDef_RecorderForm> arForms;
    CXmlNodeList objList = objCards.m_S_SelectNodesByKey(u"/root/Recorder"_s);
    for (CXmlNode objNode = objList.m_F_o_NextNode(); !objNode.m_F_b_IsNull(); objNode = objList.m_F_o_NextNode()) {
        stDef_RecorderForm stForm;
        const QString sError = ReadCard(objNode, stForm);
        if (!sError.isEmpty()) {
            stResult.sError = u"%1: recorder %2: %3"_s.arg(sFile).arg(arForms.size() + 1).arg(sError);
            return stResult;
        }
        arForms.append(stForm);
    }
    stResult.sError = arForms.isEmpty() ? u"no recorder in it"_s : m_F_s_Apply(arForms, stResult);
    if (!stResult.sError.isEmpty())
        stResult = {{}, {}, u"%1: %2"_s.arg(sFile, stResult.sError)};
    return stResult;
}

QString CRecorderStore::m_F_s_Apply(const QList<stDef_RecorderForm>& arForms, stDef_ImportResult& stResult)
{
    return m_F_s_Change([&] {
        for (const stDef_RecorderForm& stForm : arForms) {
            const QList<stDef_Recorder> arKnown = m_F_ar_Recorders();
            const auto pKnown = std::find_if(arKnown.begin(), arKnown.end(),
                                             [&stForm](const stDef_Recorder& st) { return st.sName == stForm.sName; });
            const bool bNew = pKnown == arKnown.end();
            const int nNvrID = bNew ? m_F_n_FreeNumber() : pKnown->nNvrID;
            const QString sError = m_F_s_Write(nNvrID, stForm);
            if (!sError.isEmpty())
                return sError;
            (bNew ? stResult.arAdded : stResult.arUpdated).append(nNvrID);
        }
        return QString();
    });
}

QString CRecorderStore::m_F_s_Write(int nNvrID, const stDef_RecorderForm& stForm)
{
    const stDef_RecorderForm stTidy = Tidy(stForm);
    const QList<stDef_FormFault> arFaults = s_F_ar_Faults(stTidy);
    if (!arFaults.isEmpty())
        return arFaults[0].sText;
    if (nNvrID >= MaxRecorders)
        return Tr(nsHost::FaultFull);
    CXmlObj& objXml = *vm_pEnv->m_F_p_GetMemSysXML();
    const QString sPath = NodePath(nNvrID);
    if (!m_F_b_Known(nNvrID)) // what a damaged list left there must not lend its password
        objXml.m_F_b_RemoveNods(g_sList, NodeName(nNvrID));
    if (!stTidy.sPassword.isEmpty()) {
        const QString sStored = CWinAES_CMS::s_F_s_Encrypt(stTidy.sPassword);
        if (sStored.isEmpty())
            return Tr(nsHost::FaultKey);
        objXml.m_F_b_SetValue(sPath, u"PWD"_s, sStored);
    }
    for (const stDef_FieldRow& stRow : g_astFields)
        std::visit([&](auto pValue) { objXml.m_F_b_SetValue(sPath, Key(stRow.pszKey), stTidy.*pValue); }, stRow.pValue);
    objXml.m_F_b_SetValue(g_sList, u"count"_s, std::max(m_F_n_Count(), nNvrID + 1));
    return {};
}

stDef_NvrInit CRecorderStore::m_F_o_InitRecord(int nNvrID) const
{
    const stDef_RecorderForm stForm = m_F_o_Form(nNvrID);
    const QString sStored = vm_pEnv->m_F_p_GetMemSysXML()->m_F_s_Value(NodePath(nNvrID), u"PWD"_s);
    stDef_NvrInit stInit;
    stInit.nNvrID = nNvrID;
    stInit.sIP = CSFunc::s_F_s_UnicodeToAnsi(stForm.sAddress);
    stInit.sDips = CSFunc::s_F_s_UnicodeToAnsi(stForm.sDips);
    stInit.sUID = CSFunc::s_F_s_UnicodeToAnsi(stForm.sUser);
    stInit.sPWD = CSFunc::s_F_s_UnicodeToAnsi(CWinAES_CMS::s_F_s_Decrypt(sStored));
    stInit.nHttpPort = stForm.nHttpPort;
    stInit.nRtspPort = stForm.nRtspPort;
    stInit.bDips = stForm.nDstType == 1;
    return stInit;
}
