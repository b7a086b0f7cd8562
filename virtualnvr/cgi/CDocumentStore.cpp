#include "cgi/CDocumentStore.h"

#include "CAtomicFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <glib.h>
#include <pugixml.hpp>

namespace {
constexpr int g_nMaxDepth = 256;
constexpr std::array<std::string_view, 5> g_arNames = {"System", "Schedule", "Camera", "EMail", "Motion"};

/// Stops at the first thing that a document may not hold.
struct stDef_Limits : pugi::xml_tree_walker
{
    const char* pszBroken = nullptr;
    bool for_each(pugi::xml_node& objNode) override
    {
        if (depth() > g_nMaxDepth)
            pszBroken = "nested too deeply";
        else if (objNode.type() == pugi::node_doctype)
            pszBroken = "a document type isn't taken";
        return pszBroken == nullptr;
    }
};

/// Each node and attribute takes some 64 bytes as it is parsed, so they are bounded before. What could begin one
/// counts, also where it is text.
bool TooManyNodes(const std::string& sText)
{
    const auto nMarks = std::count_if(sText.begin(), sText.end(), [](char c) { return c == '<' || c == '='; });
    return static_cast<std::size_t>(nMarks) > CDocumentStore::MaxNodes;
}

/// The text without the envelope that replies carry around "<root>".
std::string WithoutEnvelope(const std::string& sText)
{
    pugi::xml_document objDocument;
    objDocument.load_buffer(sText.data(), sText.size(), pugi::parse_default, pugi::encoding_utf8);
    if (std::string_view(objDocument.document_element().name()) == "root")
        return sText;
    const auto nBegin = objDocument.document_element().child("root").offset_debug(); // of the name, behind its "<"
    const auto nEnd = sText.rfind("</root>");
    if (nBegin < 1 || nEnd == std::string::npos)
        return sText;
    return sText.substr(static_cast<std::size_t>(nBegin) - 1, nEnd + 7 - static_cast<std::size_t>(nBegin) + 1);
}

/// Gives every attribute of that name one character a channel; the last character of the seed fills up.
void FitMasks(std::string& sText, std::string_view sAttribute, std::size_t nChannels)
{
    const std::string sOpening = std::string(sAttribute) + "=\"";
    for (std::size_t n = sText.find(sOpening); n != std::string::npos; n = sText.find(sOpening, n)) {
        n += sOpening.size();
        const std::size_t nLength = sText.find('"', n) - n;
        std::string sMask = sText.substr(n, nLength);
        sMask.resize(nChannels, sMask.empty() ? '0' : sMask.back());
        sText.replace(n, nLength, sMask);
    }
}
} // namespace

CDocumentStore::~CDocumentStore()
{
    m_S_Close();
}

bool CDocumentStore::m_F_b_Open(const std::string& sStateFolder, const std::string& sDataFolder, int nChannels,
                                std::string& sError)
{
    m_S_Close();
    std::error_code objError;
    std::filesystem::create_directories(sStateFolder, objError);
    if (objError) {
        sError = sStateFolder + ": " + objError.message();
        return false;
    }
    vm_sFolder = sStateFolder;
    vm_nFolderLock = CAtomicFile::s_F_n_Lock(sStateFolder + "/.lock");
    if (vm_nFolderLock < 0) {
        sError = sStateFolder + ": not writable, or in use by another recorder";
        return false;
    }
    for (int i = 0; i < static_cast<int>(emDef_Document::Count); ++i)
        if (!m_F_b_OpenOne(static_cast<emDef_Document>(i), sDataFolder, nChannels, sError)) {
            m_S_Close();
            return false;
        }
    return true;
}

bool CDocumentStore::m_F_b_OpenOne(emDef_Document eDocument, const std::string& sDataFolder, int nChannels,
                                   std::string& sError)
{
    const std::string sPath = m_F_s_Path(eDocument);
    std::string& sText = vm_arText[static_cast<std::size_t>(eDocument)];
    std::string sWrong = "can't be read";
    if (CAtomicFile::s_F_b_Read(sPath, sText) && s_F_b_Check(sText, sWrong))
        return true;
    std::error_code objError;
    if (std::filesystem::exists(sPath, objError)) {
        std::fprintf(stderr, "virtualnvr: %s is damaged (%s); kept as %s.damaged, started from the seed\n",
                     sPath.c_str(), sWrong.c_str(), sPath.c_str());
        std::filesystem::rename(sPath, sPath + ".damaged", objError);
    }
    const std::string sSeed = sDataFolder + "/" + std::string(s_F_s_Name(eDocument)) + ".xml";
    if (eDocument == emDef_Document::Motion)
        sText = "<root/>";
    else if (!CAtomicFile::s_F_b_Read(sSeed, sText) || !s_F_b_Check(sText, sWrong)) {
        sError = sSeed + ": " + sWrong;
        return false;
    }
    for (const char* pszMask : {"PreviewCam", "PlaybackCam"})
        FitMasks(sText, pszMask, static_cast<std::size_t>(nChannels));
    return CAtomicFile::s_F_b_Write(sPath, sText, 0600, sError, false); // what is lost is seeded again
}

void CDocumentStore::m_S_Close()
{
    CAtomicFile::s_S_Unlock(vm_nFolderLock);
    vm_nFolderLock = -1;
}

std::string CDocumentStore::m_F_s_Get(emDef_Document eDocument) const
{
    const std::lock_guard objGuard(vm_objTextLock);
    return vm_arText[static_cast<std::size_t>(eDocument)];
}

bool CDocumentStore::m_F_b_Put(emDef_Document eDocument, const std::string& sText, std::string& sError)
{
    if (!s_F_b_Check(sText, sError))
        return false;
    std::string sBare = WithoutEnvelope(sText);
    {
        const std::lock_guard objWriter(vm_objWriteLock);
        if (!CAtomicFile::s_F_b_Write(m_F_s_Path(eDocument), sBare, 0600, sError))
            return false;
        const std::lock_guard objGuard(vm_objTextLock);
        vm_arText[static_cast<std::size_t>(eDocument)] = std::move(sBare);
    }
    if (vm_fnListener)
        vm_fnListener(eDocument); // without a lock: it may read and put documents
    return true;
}

std::string_view CDocumentStore::s_F_s_Name(emDef_Document eDocument)
{
    return g_arNames[static_cast<std::size_t>(eDocument)];
}

bool CDocumentStore::s_F_b_Check(const std::string& sText, std::string& sError)
{
    if (!g_utf8_validate(sText.data(), static_cast<gssize>(sText.size()), nullptr)) {
        sError = "not UTF-8";
        return false;
    }
    if (TooManyNodes(sText)) {
        sError = "more than " + std::to_string(MaxNodes) + " nodes and attributes";
        return false;
    }
    pugi::xml_document objDocument;
    const pugi::xml_parse_result objResult =
        objDocument.load_buffer(sText.data(), sText.size(), pugi::parse_full, pugi::encoding_utf8);
    if (!objResult) {
        sError = std::string(objResult.description()) + " at byte " + std::to_string(objResult.offset);
        return false;
    }
    stDef_Limits objLimits;
    objDocument.traverse(objLimits);
    const pugi::xml_node objRoot = objDocument.document_element();
    const std::string_view sName = objRoot.name();
    if (objLimits.pszBroken)
        sError = objLimits.pszBroken;
    else if (sName == "root" || (sName == "XML" && objRoot.child("root")))
        return true;
    else
        sError = "the root element isn't \"root\"";
    return false;
}

std::string CDocumentStore::m_F_s_Path(emDef_Document eDocument) const
{
    return vm_sFolder + "/" + std::string(s_F_s_Name(eDocument)) + ".xml";
}
