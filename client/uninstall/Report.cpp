#include "client/uninstall/Report.h"

namespace client {

std::string LineOf(const Left& left)
{
    switch (left.reason) {
    case Reason::NotInstalled:
        return left.strName + ": not installed";
    case Reason::Changed:
        return left.strName + ": changed since it was installed";
    case Reason::OtherClient:
        return left.strName + ": belongs to the client in " + left.strDetail;
    case Reason::Failed:
        return left.strName + ": " + left.strDetail;
    case Reason::NoHome:
        return "HOME is not set to a folder: settings and menu entry are still there";
    }
    return left.strName;
}

} // namespace client
