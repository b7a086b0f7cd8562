#pragma once

#include <QStringList>
#include <QTranslator>

#include "fleetlink/fleetlink.h"

/// Switches the language of the host while it runs: its own texts, the library's, the buttons of message boxes, and
/// what Qt says by itself. Open windows get QEvent::LanguageChange.
class CHostLanguage : public CTextSource
{
public:
    explicit CHostLanguage(CEnvObj* pEnv);
    ~CHostLanguage() override;
    CHostLanguage(const CHostLanguage&) = delete;
    CHostLanguage& operator=(const CHostLanguage&) = delete;

    /// 0 Traditional Chinese, 1 English. False for another one and if its file is missing or damaged; then nothing
    /// changes.
    bool m_F_b_Set(int nLanguage);
    int m_F_n_Language() const;
    /// Texts of the host's own file.
    int m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const override;
    /// Files of all languages, the host's and the library's, that are missing in the folder or damaged.
    static QStringList s_F_ar_Faulty(const QString& sFolder);

private:
    CEnvObj* vm_pEnv;
    QTranslator vm_objQt;
};
