#include "cgi/CMotionStore.h"

#include "cgi/CDocumentStore.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <pugixml.hpp>
#include <sstream>

namespace {
std::string Numbered(const char* pszFormat, int n)
{
    char szName[32];
    std::snprintf(szName, sizeof szName, pszFormat, n);
    return szName;
}

pugi::xml_document Parsed(const CDocumentStore& objDocuments, emDef_Document eDocument)
{
    pugi::xml_document objDocument;
    const std::string sText = objDocuments.m_F_s_Get(eDocument);
    objDocument.load_buffer(sText.data(), sText.size(), pugi::parse_default, pugi::encoding_utf8);
    return objDocument;
}

/// Who is in the slot of a node of the Camera or the Motion document.
stDef_MotionCamera CameraOf(const pugi::xml_node& objNode)
{
    stDef_MotionCamera st;
    st.nVendorID = objNode.attribute("VendorID").as_int(-1);
    st.sIP = objNode.attribute("IP").value();
    st.nPort = objNode.attribute("HttpPort").as_int();
    return st;
}

std::string Text(const std::vector<stDef_MotionCamera>& arCameras)
{
    pugi::xml_document objDocument;
    pugi::xml_node objRoot = objDocument.append_child("root");
    for (std::size_t i = 0; i < arCameras.size(); ++i) {
        const stDef_MotionCamera& st = arCameras[i];
        if (st.nVendorID < 0)
            continue;
        pugi::xml_node objCamera = objRoot.append_child(Numbered("Cam%03d", static_cast<int>(i)).c_str());
        objCamera.append_attribute("VendorID") = st.nVendorID;
        objCamera.append_attribute("IP") = st.sIP.c_str();
        objCamera.append_attribute("HttpPort") = st.nPort;
        objCamera.append_attribute("NextIndex") = st.nNextIndex;
        for (const stDef_MotionWindow& stWindow : st.arWindows)
            stWindow.m_S_Write(objCamera.append_child("Window"), true);
    }
    std::ostringstream objText;
    objDocument.print(objText, "  ", pugi::format_indent | pugi::format_no_declaration);
    return objText.str();
}

/// Takes the first old camera out that fits.
template <typename Fits>
std::optional<stDef_MotionCamera> TakeOut(std::vector<stDef_MotionCamera>& arOld, Fits fits)
{
    const auto it =
        std::find_if(arOld.begin(), arOld.end(), [&](const auto& st) { return st.nVendorID >= 0 && fits(st); });
    if (it == arOld.end())
        return std::nullopt;
    return std::exchange(*it, stDef_MotionCamera());
}
} // namespace

void CMotionStore::m_S_Load(int nChannels)
{
    const pugi::xml_document objDocument = Parsed(vm_objDocuments, emDef_Document::Motion);
    {
        const std::lock_guard objGuard(vm_objLock);
        vm_arCameras.assign(static_cast<std::size_t>(nChannels), {});
        for (int i = 0; i < nChannels; ++i) {
            const pugi::xml_node objNode = objDocument.document_element().child(Numbered("Cam%03d", i).c_str());
            stDef_MotionCamera& st = vm_arCameras[static_cast<std::size_t>(i)] = CameraOf(objNode);
            st.nNextIndex = std::max(objNode.attribute("NextIndex").as_int(), 0);
            for (const pugi::xml_node& objWindow : objNode.children("Window"))
                if (st.m_F_p_Limits())
                    st.m_F_b_Restore(stDef_MotionWindow::s_F_o_Read(objWindow));
        }
    }
    m_S_TakeCameras();
}

void CMotionStore::m_S_TakeCameras()
{
    const std::lock_guard objGuard(vm_objLock);
    const pugi::xml_document objDocument = Parsed(vm_objDocuments, emDef_Document::Camera);
    const pugi::xml_node objList = objDocument.document_element().child("Camera");
    std::vector<stDef_MotionCamera> arOld = vm_arCameras, arNew(arOld.size());
    const int nCount = std::min(objList.attribute("count").as_int(), static_cast<int>(arNew.size()));
    for (int i = 0; i < nCount; ++i)
        arNew[static_cast<std::size_t>(i)] = CameraOf(objList.child(Numbered("Cam%03d", i).c_str()));
    // First by address, for all of them: a camera that moved up has to find its windows before who is in its old slot.
    std::vector<bool> arFound(arNew.size());
    const auto take = [&](std::size_t i, auto fits) {
        if (arFound[i] || arNew[i].nVendorID < 0)
            return;
        if (const auto objOld =
                TakeOut(arOld, [&](const auto& st) { return st.nVendorID == arNew[i].nVendorID && fits(st); })) {
            arFound[i] = true;
            arNew[i].arWindows = objOld->arWindows;
            arNew[i].nNextIndex = objOld->nNextIndex;
        }
    };
    for (std::size_t i = 0; i < arNew.size(); ++i)
        take(i, [&](const auto& st) { return st.sIP == arNew[i].sIP && st.nPort == arNew[i].nPort; });
    for (std::size_t i = 0; i < arNew.size(); ++i) {
        take(i, [&](const auto& st) { return &st == &arOld[i]; });
        if (!arFound[i])
            arNew[i].m_S_Begin(static_cast<int>(i));
    }
    std::string sError;
    if (arNew != vm_arCameras && !m_F_b_Keep(arNew, sError)) {
        std::fprintf(stderr, "virtualnvr: %s; motion windows are kept in memory\n", sError.c_str());
        vm_arCameras = std::move(arNew);
    }
}

stDef_MotionCamera CMotionStore::m_F_o_Camera(int nCamera) const
{
    const std::lock_guard objGuard(vm_objLock);
    return vm_arCameras.at(static_cast<std::size_t>(nCamera));
}

bool CMotionStore::m_F_b_Change(int nCamera,
                                const std::function<bool(stDef_MotionCamera&, std::string& sError)>& fnChange,
                                std::string& sError)
{
    const std::lock_guard objGuard(vm_objLock);
    std::vector<stDef_MotionCamera> arCameras = vm_arCameras;
    stDef_MotionCamera& st = arCameras.at(static_cast<std::size_t>(nCamera));
    if (!st.m_F_p_Limits())
        sError = "this camera has no motion detection";
    return st.m_F_p_Limits() && fnChange(st, sError) && m_F_b_Keep(std::move(arCameras), sError);
}

bool CMotionStore::m_F_b_Keep(std::vector<stDef_MotionCamera> arCameras, std::string& sError)
{
    if (!vm_objDocuments.m_F_b_Put(emDef_Document::Motion, Text(arCameras), sError))
        return false;
    vm_arCameras = std::move(arCameras);
    return true;
}
