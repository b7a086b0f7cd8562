#pragma once

#include <array>
#include <mutex>
#include <string>
#include <string_view>

enum class emDef_Document
{
    System,
    Schedule,
    Camera,
    EMail,
    Count
};

/// The setting documents of the virtual recorder. Each is one file of the state folder, made from its seed at first
/// use. A document is handed out byte for byte as it was put. All operations may be called from any thread.
class CDocumentStore
{
public:
    /// Reads every document of sStateFolder (made if needed); one that is missing is copied from sDataFolder, one that
    /// is damaged is moved aside as "<name>.damaged", told on stderr, and copied from the seed, too.
    /// @return false with sError set if a folder or a seed can't be used.
    bool m_F_b_Open(const std::string& sStateFolder, const std::string& sDataFolder, std::string& sError);

    /// The document's text, UTF-8.
    std::string m_F_s_Get(emDef_Document eDocument) const;

    /// Replaces a document. It is on the disk when the call returns; a kill at any moment leaves the old or the new
    /// text.
    /// @return false with sError set, and nothing changed, if the text is no XML with a root element, or can't be
    /// written.
    bool m_F_b_Put(emDef_Document eDocument, const std::string& sText, std::string& sError);

    /// "System", "Schedule", "Camera" or "EMail"; the file is named <name>.xml.
    static std::string_view s_F_s_Name(emDef_Document eDocument);

    /// True if the text is well-formed XML with a root element, nested no deeper than 256. sError tells what is wrong.
    static bool s_F_b_Check(const std::string& sText, std::string& sError);

private:
    bool m_F_b_OpenOne(emDef_Document eDocument, const std::string& sDataFolder, std::string& sError);
    std::string m_F_s_Path(emDef_Document eDocument) const;

    mutable std::mutex vm_objLock;
    std::string vm_sFolder;
    std::array<std::string, static_cast<std::size_t>(emDef_Document::Count)> vm_arText;
};
