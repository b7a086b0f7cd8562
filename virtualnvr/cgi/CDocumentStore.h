#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

enum class emDef_Document
{
    System,
    Schedule,
    Camera,
    EMail,
    Motion, ///< the recorder's own, which begins empty and isn't fetched or posted
    Count
};

/// The setting documents of the virtual recorder. Each is one file of the state folder, made from its seed at first
/// use. A document is handed out byte for byte as it was put. All operations may be called from any thread.
class CDocumentStore
{
public:
    static constexpr std::size_t MaxNodes = 500000; ///< of a document, attributes included

    CDocumentStore() = default;
    ~CDocumentStore(); ///< closes
    CDocumentStore(const CDocumentStore&) = delete;
    CDocumentStore& operator=(const CDocumentStore&) = delete;

    /// Reads every document of sStateFolder (made if needed). One that is missing is copied from sDataFolder, with the
    /// camera masks of its accounts brought to nChannels characters. One that is damaged is first moved aside as
    /// "<name>.xml.damaged" and told on stderr.
    /// @return false with sError set if a folder or a seed can't be used, or another recorder has the state folder.
    bool m_F_b_Open(const std::string& sStateFolder, const std::string& sDataFolder, int nChannels,
                    std::string& sError);

    /// Gives the state folder up. The texts stay readable.
    void m_S_Close();

    /// The document's text, UTF-8.
    std::string m_F_s_Get(emDef_Document eDocument) const;

    /// Replaces a document; an envelope around <root> is taken off. It is on the disk when the call returns; a kill at
    /// any moment leaves the old or the new text.
    /// @return false with sError set, and nothing changed, if the text fails s_F_b_Check or can't be written.
    bool m_F_b_Put(emDef_Document eDocument, const std::string& sText, std::string& sError);

    /// Called after each document that was put, by its thread. Set it before others use the store.
    void m_S_SetListener(std::function<void(emDef_Document)> fnListener) { vm_fnListener = std::move(fnListener); }

    /// "System", "Schedule", "Camera", "EMail" or "Motion"; the file is named <name>.xml.
    static std::string_view s_F_s_Name(emDef_Document eDocument);

    /// True if the text is UTF-8 and well-formed XML, its root element is "root" (or an envelope "XML" around that), it
    /// is nested no deeper than 256, has no document type and at most MaxNodes. sError tells what is wrong.
    static bool s_F_b_Check(const std::string& sText, std::string& sError);

private:
    bool m_F_b_OpenOne(emDef_Document eDocument, const std::string& sDataFolder, int nChannels, std::string& sError);
    std::string m_F_s_Path(emDef_Document eDocument) const;

    std::mutex vm_objWriteLock; ///< one writer at a time; held during disk work
    mutable std::mutex vm_objTextLock;
    std::string vm_sFolder;
    std::function<void(emDef_Document)> vm_fnListener;
    int vm_nFolderLock = -1; ///< descriptor of the folder's lock file
    std::array<std::string, static_cast<std::size_t>(emDef_Document::Count)> vm_arText;
};
