#include <gtest/gtest.h>

#include "look/GuiManager.h"
#include "tests/look/FakeLibrary.h"

using PelkGUI::GuiManager;

TEST(GuiManager, BeginsWithItsDefaults)
{
    const GuiManager manager;
    EXPECT_EQ(manager.m_pfnSetLayout, nullptr);
    EXPECT_EQ(manager.m_pfnGetMonitorInfo, nullptr);
    EXPECT_FALSE(manager.m_bRightToLeft);
    EXPECT_EQ(manager.m_nDefaultFontSize, 11);
    EXPECT_STREQ(manager.m_strDefaultFontFace, "Tahoma");
    EXPECT_TRUE(manager.m_strLanguage.IsEmpty());
    EXPECT_EQ(&PelkGUI::GetGuiManager(), &PelkGUI::GetGuiManager());
}

TEST(GuiManager, FindsWhatTheSystemOffers)
{
    GuiManager manager;
    EXPECT_EQ(manager.InitManager(), 1);
    EXPECT_EQ(manager.m_pfnSetLayout, &SetLayout);
    EXPECT_EQ(manager.m_pfnGetMonitorInfo, &GetMonitorInfoA);
    EXPECT_EQ(manager.m_pfnMonitorFromRect, &MonitorFromRect);
    EXPECT_EQ(manager.m_pfnMonitorFromWindow, &MonitorFromWindow);
    EXPECT_EQ(manager.m_pfnSetLayeredWindowAttributes, nullptr) << "windows have no layers here";
    EXPECT_EQ(manager.ExitManager(), 1);
    EXPECT_NE(manager.m_pfnSetLayout, nullptr) << "left as it was";
    EXPECT_NE(manager.m_hGdi32, nullptr);
}

TEST(GuiManager, DoesWithoutWhatTheSystemLacks)
{
    GuiManager manager;
    manager.InitManager();
    test::FakeLibrary gdi("gdi32.dll");
    test::FakeLibrary user("user32.dll");
    EXPECT_EQ(manager.InitManager(), 1);
    EXPECT_NE(manager.m_hGdi32, nullptr);
    EXPECT_EQ(manager.m_pfnSetLayout, nullptr);
    EXPECT_EQ(manager.m_pfnGetMonitorInfo, nullptr);
    EXPECT_EQ(manager.m_pfnMonitorFromRect, nullptr);
    EXPECT_EQ(manager.m_pfnMonitorFromWindow, nullptr);
}
