#pragma once

#include <QString>
#include <QVarLengthArray>
#include <string_view>

/// UTF-8 of a short text, zero-terminated, on the stack where it fits.
class CXmlUtf8
{
public:
    explicit CXmlUtf8(QStringView sText);
    CXmlUtf8(const CXmlUtf8&) = delete;
    CXmlUtf8& operator=(const CXmlUtf8&) = delete;

    const char* m_F_p_Text() const { return vm_arBytes.data(); }
    std::string_view m_F_s_View() const { return {vm_arBytes.data(), static_cast<std::size_t>(vm_arBytes.size()) - 1}; }

private:
    QVarLengthArray<char, 256> vm_arBytes;
};

/// A node path, cut into its names.
class CXmlPath
{
public:
    explicit CXmlPath(const QString& sPath);

    bool m_F_b_IsValid() const { return vm_bValid; } ///< false: a name of it is empty
    bool m_F_b_IsAbsolute() const { return vm_bAbsolute; }
    /// The names; of an absolute path the first is that of the document element. They live as long as this object.
    const QVarLengthArray<std::string_view, 16>& m_F_ar_Names() const { return vm_arNames; }

private:
    CXmlUtf8 vm_objText;
    QVarLengthArray<std::string_view, 16> vm_arNames;
    bool vm_bAbsolute = false;
    bool vm_bValid = true;
};
