#include "toolkit/form/CTextSource.h"

CTextSource::~CTextSource() = default;

int CTextSource::m_F_n_LoadText(const stDef_Text& stText, QString& sOut) const
{
    if (stText.pszOwnKey) {
        QString sOwn;
        m_F_n_LoadString(QString::fromUtf8(stText.pszOwnKey), sOwn, {});
        if (!sOwn.isEmpty()) {
            sOut = sOwn;
            return 1;
        }
    }
    return m_F_n_LoadString(QString::fromUtf8(stText.pszKey), sOut, QString::fromUtf8(stText.pszDefault));
}

QString CTextSource::m_F_s_Text(const stDef_Text& stText, const QString& sShown) const
{
    QString sText = sShown;
    m_F_n_LoadText(stText, sText);
    return sText;
}
