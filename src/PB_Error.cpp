#include "PB_Error.h"

#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/PB_Error";
}

std::string PB_Error::getErrorTxt(ErrorCode code)
{
    PB_TRACE("PB_Error::getErrorTxt()");
    switch (code) {
    case SUCCESS:
        return "";
    case NAME:
        return "PBerror.name";
    case DB_WRITE:
        return "PBerror.dbWrite";
    case DB_DELETE:
        return "PBerror.dbDelete";
    case DB_DELETE_ALL:
        return "PBerror.dbDeleteAll";
    case DB_OUT_OF_SPACE:
        return "PBerror.dbOutOfSpace";
    case NO_INDEX:
        return "PBerror.noIndex";
    case NO_GROUP_NAME:
        return "PBerror.no.group.name";
    case GROUP_WRITE_FAILURE:
        return "PBerror.group.write.failure";
    }
    return "";
}
