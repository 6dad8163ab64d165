// A CSTA service request (ECMA-269). Sending it is synchronous; afterwards the request itself holds
// the response code and the response.

#pragma once

#include <memory>
#include <string>

#include <framework/Export.h>
#include <framework/csta/CSTAResponse.h>

class Executable;

class FRAMEWORK_API CSTARequest {
public:
    virtual ~CSTARequest();

    CSTARequest(const CSTARequest&) = delete;
    CSTARequest& operator=(const CSTARequest&) = delete;

    // Who asks; not owned.
    void setSourceService(Executable* source) { m_pSourceService = source; }
    Executable* getSourceService() const { return m_pSourceService; }

    // 0: success. Not 0 before it was sent.
    int getResponseCode() const { return m_responseCode; }
    // Owned by the request; null when there was none.
    CSTAResponse* getResponse() const { return m_response.get(); }

    // For the service.
    void setResponse(int code, std::unique_ptr<CSTAResponse> response);

protected:
    CSTARequest();

private:
    Executable* m_pSourceService = nullptr;
    int m_responseCode = -1;
    std::unique_ptr<CSTAResponse> m_response;
};
