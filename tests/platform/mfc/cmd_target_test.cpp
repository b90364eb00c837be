#include <afxwin.h>

#include <gtest/gtest.h>

#include <string>

namespace {

class Base : public CCmdTarget {
public:
    std::string m_strLog;

protected:
    void OnShared() { m_strLog += "base "; }
    void OnBaseOnly() { m_strLog += "baseonly "; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Base, CCmdTarget)
ON_COMMAND(1, &Base::OnShared)
ON_COMMAND(2, &Base::OnBaseOnly)
END_MESSAGE_MAP()

class Derived : public Base {
protected:
    void OnOwn() { m_strLog += "own "; }
    void OnRange(UINT nID) { m_strLog += "range" + std::to_string(nID) + " "; }
    BOOL OnMaybe(UINT nID)
    {
        m_strLog += "maybe ";
        return nID == 31;
    }
    void OnNotification() { m_strLog += "notification "; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Derived, Base)
ON_COMMAND(1, &Derived::OnOwn)
ON_COMMAND_RANGE(10, 12, &Derived::OnRange)
ON_COMMAND(12, &Derived::OnOwn)
ON_COMMAND_EX(30, &Derived::OnMaybe)
ON_COMMAND_EX(31, &Derived::OnMaybe)
ON_CONTROL(5, 40, &Derived::OnNotification)
END_MESSAGE_MAP()

struct RouteCase {
    const char* why;
    UINT nID;
    int nCode;
    BOOL bHandled;
    const char* pszLog;
};

const RouteCase kRoutes[] = {
    { "the derived class's handler comes first", 1, CN_COMMAND, TRUE, "own " },
    { "what it lacks goes to the base", 2, CN_COMMAND, TRUE, "baseonly " },
    { "first of a range", 10, CN_COMMAND, TRUE, "range10 " },
    { "the earlier entry of two", 12, CN_COMMAND, TRUE, "range12 " },
    { "past a range", 13, CN_COMMAND, FALSE, "" },
    { "a handler that declines", 30, CN_COMMAND, FALSE, "maybe " },
    { "a handler that accepts", 31, CN_COMMAND, TRUE, "maybe " },
    { "a notification is no command", 40, CN_COMMAND, FALSE, "" },
    { "a notification", 40, 5, TRUE, "notification " },
};

TEST(CCmdTarget, RoutesToTheFirstHandlerThatFits)
{
    for (const RouteCase& c : kRoutes) {
        SCOPED_TRACE(c.why);
        Derived target;
        EXPECT_EQ(target.OnCmdMsg(c.nID, c.nCode, nullptr, nullptr), c.bHandled);
        EXPECT_EQ(target.m_strLog, c.pszLog);
    }
}

} // namespace
