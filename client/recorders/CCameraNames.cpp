#include "recorders/CCameraNames.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "recorders/CNvrQuery.h"
#include "recorders/CRecorderStore.h"
#include "recorders/CRecorderWatch.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int TimeoutMs = 10000; // for each of the two or three documents
constexpr int MaxRunning = 4;
constexpr int MaxTries = 3; // a recorder may lock an account that is refused too often
constexpr int TryAgainMs = 30000;
constexpr int MaxNameLength = 64;
const QString g_sCameras = u"/root/Camera"_s;

QString CameraPath(int nChannel)
{
    return g_sCameras + QString::asprintf("/Cam%03d", nChannel);
}

QStringList ReadNames(const CXmlObj& xmlCamera)
{
    QStringList arNames;
    const int nCount = std::min(xmlCamera.m_F_n_GetValueInt(g_sCameras, u"count"_s, 0), CRecorderStore::MaxChannels);
    for (int nChannel = 0; nChannel < nCount; ++nChannel)
        arNames.append(CCameraNames::s_F_s_OneLine(xmlCamera.m_F_s_Value(CameraPath(nChannel), u"Name"_s)));
    return arNames;
}

} // namespace

struct CCameraNames::stDef_Known
{
    QString sOrigin; ///< whose names they are: numbers of recorders come again
    QStringList arNames;
    bool bWanted = false;
    bool bDue = false; ///< to be asked when it is within reach
    int nFailed = 0;   ///< tries in a row
    std::unique_ptr<CNvrQuery> pQuery;
};

struct CCameraNames::stDef_Answer
{
    bool bTold = false;
    QStringList arNames;
};

CCameraNames::CCameraNames(CEnvObj* pEnv, const CRecorderStore* pStore, const CRecorderWatch* pWatch)
    : vm_pEnv(pEnv), vm_pStore(pStore), vm_pWatch(pWatch)
{
    vm_objSoon.setSingleShot(true);
    connect(&vm_objSoon, &QTimer::timeout, this, &CCameraNames::m_S_AskDue);
    connect(pWatch, &CRecorderWatch::S_Changed, this, &CCameraNames::m_S_AskAgain);
}

CCameraNames::~CCameraNames() = default;

void CCameraNames::m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders)
{
    std::map<int, stDef_Known> mapOld = std::exchange(vm_mapKnown, {});
    for (const stDef_Recorder& stRecorder : arRecorders) {
        const QString sOrigin = stRecorder.nDstType == 1
                                    ? vm_pStore->m_F_o_Form(stRecorder.nNvrID).sDips
                                    : u"%1:%2"_s.arg(stRecorder.sAddress).arg(stRecorder.nHttpPort);
        auto itOld = mapOld.find(stRecorder.nNvrID);
        if (itOld != mapOld.end() && itOld->second.sOrigin == sOrigin)
            vm_mapKnown.insert(mapOld.extract(itOld));
        else
            vm_mapKnown[stRecorder.nNvrID].sOrigin = sOrigin;
    }
}

QString CCameraNames::m_F_s_Label(const stDef_ChannelKey& stKey)
{
    QString sName;
    if (const auto it = vm_mapKnown.find(stKey.nNvrID); it != vm_mapKnown.end()) {
        if (!std::exchange(it->second.bWanted, true)) {
            m_S_Load(stKey.nNvrID, it->second);
            m_S_AskAgain(stKey.nNvrID);
        }
        sName = it->second.arNames.value(stKey.nChannel);
    }
    const QString sNumber = QString::number(stKey.nChannel + 1);
    // Both at once: a name may look like a place holder.
    return sName.isEmpty() ? Tr(nsHost::TreeChannel).arg(sNumber) : Tr(nsHost::Camera).arg(sName, sNumber);
}

QString CCameraNames::s_F_s_OneLine(const QString& sName)
{
    QString sLine = sName.simplified();
    sLine.removeIf([](QChar c) {
        const bool bTurns = (c >= u'\u202a' && c <= u'\u202e') || (c >= u'\u2066' && c <= u'\u2069');
        return bTurns || c.category() == QChar::Other_Control;
    });
    sLine.truncate(MaxNameLength);
    if (!sLine.isEmpty() && sLine.back().isHighSurrogate())
        sLine.chop(1);
    return sLine;
}

// --- the cache

// Of the recorder's document the names alone: it also holds the cameras' accounts.
void CCameraNames::m_S_Save(int nNvrID, const stDef_Known& stKnown) const
{
    CXmlObj xmlNames;
    xmlNames.m_F_b_LoadXML(u"<root/>"_s);
    xmlNames.m_F_b_SetValue(g_sCameras, u"Origin"_s, stKnown.sOrigin);
    xmlNames.m_F_b_SetValue(g_sCameras, u"count"_s, static_cast<int>(stKnown.arNames.size()));
    for (int nChannel = 0; nChannel < stKnown.arNames.size(); ++nChannel)
        xmlNames.m_F_b_SetValue(CameraPath(nChannel), u"Name"_s, stKnown.arNames[nChannel]);
    const CNvrHolder pNvr = CNvrQuery::s_F_p_MakeObject(vm_pEnv, vm_pStore->m_F_o_InitRecord(nNvrID));
    if (pNvr)
        pNvr->m_S_SaveXmlCamera(&xmlNames);
}

void CCameraNames::m_S_Load(int nNvrID, stDef_Known& stKnown) const
{
    CXmlObj xmlNames;
    const CNvrHolder pNvr = CNvrQuery::s_F_p_MakeObject(vm_pEnv, vm_pStore->m_F_o_InitRecord(nNvrID));
    if (pNvr)
        pNvr->m_S_GetXmlCamera(&xmlNames);
    if (xmlNames.m_F_s_Value(g_sCameras, u"Origin"_s) == stKnown.sOrigin)
        stKnown.arNames = ReadNames(xmlNames);
}

// --- the recorder

void CCameraNames::m_S_AskAgain(int nNvrID)
{
    const auto it = vm_mapKnown.find(nNvrID);
    if (it == vm_mapKnown.end() || !it->second.bWanted)
        return;
    it->second.bDue = true;
    it->second.nFailed = 0;
    vm_objSoon.start();
}

void CCameraNames::m_S_AskDue()
{
    auto nRunning = std::count_if(vm_mapKnown.begin(), vm_mapKnown.end(),
                                  [](const auto& entry) { return entry.second.pQuery != nullptr; });
    for (auto& [nNvrID, stKnown] : vm_mapKnown) {
        const bool bThere = vm_pWatch->m_F_n_Reach(nNvrID) == emDef_Reach::There;
        if (!stKnown.bDue || !bThere || stKnown.pQuery || nRunning >= MaxRunning)
            continue;
        stKnown.bDue = false;
        ++nRunning;
        m_S_Ask(nNvrID, stKnown);
    }
}

void CCameraNames::m_S_Ask(int nNvrID, stDef_Known& stKnown)
{
    const auto pAnswer = std::make_shared<stDef_Answer>();
    const auto Ask = [pAnswer](CWndNvrBase& objNvr) {
        CXmlObj xmlSystemInfo, xmlLoginInfo, xmlCamera;
        pAnswer->bTold = objNvr.m_F_n_CameraSynchronization(&xmlSystemInfo, &xmlLoginInfo, &xmlCamera, TimeoutMs);
        pAnswer->arNames = ReadNames(xmlCamera);
    };
    stKnown.pQuery = std::make_unique<CNvrQuery>(vm_pEnv, vm_pStore->m_F_o_InitRecord(nNvrID), Ask, this);
    connect(stKnown.pQuery.get(), &CNvrQuery::S_Done, this, [this, nNvrID, pAnswer] { m_S_Take(nNvrID, *pAnswer); });
}

void CCameraNames::m_S_Take(int nNvrID, const stDef_Answer& stAnswer)
{
    stDef_Known& stKnown = vm_mapKnown.at(nNvrID);
    stKnown.pQuery.release()->deleteLater(); // it is the one that calls
    vm_objSoon.start();
    if (!stAnswer.bTold) {
        if (++stKnown.nFailed < MaxTries)
            QTimer::singleShot(TryAgainMs, this, [this, nNvrID] {
                if (const auto it = vm_mapKnown.find(nNvrID); it != vm_mapKnown.end() && it->second.nFailed > 0)
                    it->second.bDue = true;
                vm_objSoon.start();
            });
        return;
    }
    stKnown.nFailed = 0;
    if (stKnown.arNames == stAnswer.arNames)
        return;
    stKnown.arNames = stAnswer.arNames;
    m_S_Save(nNvrID, stKnown);
    Q_EMIT S_Changed(nNvrID);
}
