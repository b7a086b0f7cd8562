#include "setup/CPageToCome.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/CWndNvrEmbedded.h"

namespace {

constexpr Text NotYetText{"PageToCome", "These settings can't be edited here yet. They stay as they are."};

} // namespace

CPageToCome::CPageToCome(CWndNvrEmbedded* pNvr) : vm_pNvr(pNvr) {}

int CPageToCome::OnInitDialog()
{
    auto* const pText = new QLabel(vm_pNvr->m_F_s_Text(NotYetText, QString::fromUtf8(NotYetText.pszDefault)));
    pText->setAlignment(Qt::AlignCenter);
    pText->setWordWrap(true);
    (new QVBoxLayout(this))->addWidget(pText);
    return CPropertyPage::OnInitDialog();
}
