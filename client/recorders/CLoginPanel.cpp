#include "recorders/CLoginPanel.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <iterator>

#include "live/CLiveState.h"
#include "recorders/CNvrQuery.h"
#include "recorders/CRecorderStore.h"
#include "recorders/CRecorderTree.h"
#include "recorders/CRecorderWatch.h"
#include "window/HostTexts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int AskDelayMs = 250;
constexpr int FirstStyleFlag = 1;
constexpr stDef_Text g_astStyles[] = {{"LoginStyleNormal", "Normal"},
                                      {"LoginStyleSimple", "Simple"},
                                      {"LoginStyleProfessional", "Professional"},
                                      {"LoginStyleAdvanced", "Advanced"}};
constexpr int SecondOnlyFlag = 13;

struct stDef_Row
{
    stDef_Text stText;
    const char* pszName; ///< object name of the value
};

constexpr stDef_Row g_astRows[] = {
    {{"LoginAccount", "Account"}, "LoginAccount"},
    {{"LoginView", "Live view"}, "LoginView"},
    {{"LoginStyles", "Monitor styles"}, "LoginStyles"},
    {{"LoginSecondOnly", "Second stream"}, "LoginSecondOnly"},
};

} // namespace

CLoginPanel::CLoginPanel(CEnvObj* pEnv, const CRecorderStore* pStore, CRecorderTree* pTree,
                         const CRecorderWatch* pWatch, QWidget* pParent)
    : QWidget(pParent),
      vm_pEnv(pEnv),
      vm_pStore(pStore),
      vm_pTree(pTree),
      vm_pWatch(pWatch),
      vm_pTitle(new QLabel),
      vm_pForm(new QGridLayout)
{
    m_S_Build();
    vm_objAskSoon.setSingleShot(true);
    vm_objAskSoon.setInterval(AskDelayMs);
    connect(&vm_objAskSoon, &QTimer::timeout, this, &CLoginPanel::m_S_Ask);
    connect(pTree, &QTreeWidget::currentItemChanged, this, &CLoginPanel::m_S_Pick);
    connect(pWatch, &CRecorderWatch::S_Changed, this, [this](int nNvrID) {
        if (nNvrID == vm_nNvrID)
            m_S_Refresh();
    });
    m_S_Refresh();
}

CLoginPanel::~CLoginPanel() = default;

void CLoginPanel::m_S_Build()
{
    auto* const pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(12, 8, 12, 10);
    QFont objBold = vm_pTitle->font();
    objBold.setBold(true);
    vm_pTitle->setFont(objBold);
    pLayout->addWidget(vm_pTitle);
    pLayout->addLayout(vm_pForm);
    vm_pForm->setContentsMargins(0, 0, 0, 0);
    vm_pForm->setVerticalSpacing(3);
    vm_pForm->setHorizontalSpacing(8);
    vm_pForm->setColumnStretch(1, 1);
    for (const stDef_Row& stRow : g_astRows) {
        vm_arNames.append(new QLabel);
        vm_arValues.append(new QLabel);
        vm_arValues.last()->setObjectName(QString::fromLatin1(stRow.pszName));
        vm_arValues.last()->setWordWrap(true);
        vm_arValues.last()->setTextFormat(Qt::PlainText);
        const int nRow = int(vm_arNames.size()) - 1;
        vm_pForm->addWidget(vm_arNames.last(), nRow, 0, Qt::AlignTop);
        vm_pForm->addWidget(vm_arValues.last(), nRow, 1, Qt::AlignTop);
    }
}

void CLoginPanel::m_S_Pick()
{
    if (vm_pTree->m_F_n_CurrentRecorder() != vm_nNvrID)
        m_S_Refresh();
}

void CLoginPanel::m_S_Refresh()
{
    vm_nNvrID = vm_pTree->m_F_n_CurrentRecorder();
    vm_pQuery.reset();
    vm_sRights.clear();
    vm_arCan.clear();
    vm_bAsking = vm_nNvrID >= 0 && vm_pWatch->m_F_n_Reach(vm_nNvrID) == emDef_Reach::There;
    if (vm_bAsking)
        vm_objAskSoon.start();
    else
        vm_objAskSoon.stop();
    m_S_Show();
}

void CLoginPanel::m_S_Ask()
{
    const auto pInfo = std::make_shared<QStringList>();
    vm_pQuery = std::make_unique<CNvrQuery>(vm_pEnv, vm_pStore->m_F_o_InitRecord(vm_nNvrID),
                                            [pInfo](CWndNvrBase& objNvr) { objNvr.m_S_GetLoginInfo(pInfo.get()); });
    connect(vm_pQuery.get(), &CNvrQuery::S_Done, this, [this, pInfo] {
        vm_bAsking = false;
        vm_sRights = pInfo->value(0).trimmed().left(CRecorderStore::MaxChannels);
        const QString sCan = pInfo->value(1).trimmed();
        vm_arCan = sCan.isEmpty() ? QStringList() : sCan.split(u','); // by position: an empty one counts
        m_S_Show();
    });
}

// --- what it says

QString CLoginPanel::s_F_s_Channels(const QString& sMask)
{
    QStringList arParts;
    for (qsizetype nFirst = sMask.indexOf(u'1'); nFirst >= 0;) {
        qsizetype nEnd = nFirst;
        while (nEnd < sMask.size() && sMask[nEnd] == u'1')
            ++nEnd;
        arParts.append(nEnd - nFirst > 1 ? u"%1\u2013%2"_s.arg(nFirst + 1).arg(nEnd) : QString::number(nEnd));
        nFirst = sMask.indexOf(u'1', nEnd);
    }
    return arParts.join(u", "_s);
}

QString CLoginPanel::m_F_s_View() const
{
    const auto nAllowed = vm_sRights.count(u'1');
    if (nAllowed == 0)
        return Tr(nsHost::LoginNoChannels).arg(vm_sRights.size());
    // No line ends within a range: word joiners hold it together.
    const QString sChannels = s_F_s_Channels(vm_sRights).replace(u'\u2013', u"\u2060\u2013\u2060"_s);
    return Tr(nsHost::LoginChannels).arg(nAllowed).arg(vm_sRights.size()).arg(sChannels);
}

QString CLoginPanel::m_F_s_Styles() const
{
    QStringList arStyles;
    for (int nFlag = FirstStyleFlag; const stDef_Text& stStyle : g_astStyles) {
        if (vm_arCan.value(nFlag++).trimmed() == u"1"_s)
            arStyles.append(Tr(stStyle));
    }
    return arStyles.isEmpty() ? Tr(nsHost::LoginNone) : arStyles.join(Tr({"ListSeparator", ", "}));
}

QString CLoginPanel::m_F_s_SecondOnly() const
{
    const bool bCan = vm_arCan.value(SecondOnlyFlag).trimmed() == u"1"_s;
    return Tr(bCan ? nsHost::LoginCan : nsHost::LoginCannot);
}

void CLoginPanel::m_S_Show()
{
    m_S_Tint();
    setVisible(vm_nNvrID >= 0);
    if (vm_nNvrID < 0)
        return;
    vm_pTitle->setText(Tr(nsHost::LoginTitle));
    const bool bAway = vm_pWatch->m_F_n_Reach(vm_nNvrID) == emDef_Reach::Away;
    QString sUntold = Tr(vm_bAsking ? nsHost::LoginAsking : bAway ? nsHost::ReachAway : nsHost::LoginSilent);
    const QString asValues[] = {
        vm_pStore->m_F_o_Form(vm_nNvrID).sUser,
        vm_sRights.isEmpty() ? sUntold : m_F_s_View(),
        vm_arCan.isEmpty() ? QString() : m_F_s_Styles(),
        vm_arCan.isEmpty() ? QString() : m_F_s_SecondOnly(),
    };
    for (std::size_t i = 0; i < std::size(g_astRows); ++i) {
        vm_arNames[int(i)]->setText(Tr(g_astRows[i].stText));
        vm_arValues[int(i)]->setText(asValues[i].isEmpty() ? u"\u2013"_s : asValues[i]);
        vm_arValues[int(i)]->setAccessibleName(u"%1: %2"_s.arg(Tr(g_astRows[i].stText), asValues[i]));
    }
}

// Of the text's own colour: a palette's one for place holders may be of another scheme.
void CLoginPanel::m_S_Tint()
{
    QPalette objQuiet = palette();
    objQuiet.setColor(QPalette::WindowText, CLiveState::s_F_o_Quiet(objQuiet.color(QPalette::WindowText)));
    for (QLabel* const pName : vm_arNames)
        pName->setPalette(objQuiet);
}

void CLoginPanel::changeEvent(QEvent* pEvent)
{
    QWidget::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange)
        m_S_Tint();
    if (pEvent->type() == QEvent::LanguageChange)
        m_S_Show();
}
