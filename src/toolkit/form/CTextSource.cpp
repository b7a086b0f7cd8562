#include "toolkit/form/CTextSource.h"

CTextSource::~CTextSource() = default;

QString CTextSource::m_F_s_Text(const stDef_Text& stText, const QString& sShown) const
{
    QString sText = sShown;
    m_F_n_LoadString(QString::fromUtf8(stText.pszKey), sText, QString::fromUtf8(stText.pszDefault));
    return sText;
}
