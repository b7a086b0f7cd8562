#pragma once

#include "cgi/CCgiSubject.h"
#include "cgi/CDocumentStore.h"

/// The setting documents, fetched and posted.
class CDocumentCgi : public CCgiSubject
{
public:
    explicit CDocumentCgi(CDocumentStore& objDocuments) : vm_objDocuments(objDocuments) {}

    std::vector<stDef_CgiRoute> m_F_ar_Routes() override;

private:
    stDef_CgiReply m_F_o_Get(emDef_Document eDocument) const;
    stDef_CgiReply m_F_o_Put(emDef_Document eDocument, const std::string& sText);

    CDocumentStore& vm_objDocuments;
};
