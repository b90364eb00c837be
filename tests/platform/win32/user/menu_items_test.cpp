// Menus as data.
#include <windows.h>

#include <string>

#include <gtest/gtest.h>

namespace {

class MenuItems : public testing::Test {
protected:
    MenuItems()
    {
        AppendMenuA(below_, MF_STRING, 10, "below");
        AppendMenuA(menu_, MF_STRING, 1, "one");
        AppendMenuA(menu_, MF_POPUP | MF_STRING, reinterpret_cast<UINT_PTR>(below_), "more");
        AppendMenuA(menu_, MF_SEPARATOR, 0, nullptr);
    }
    ~MenuItems() override { DestroyMenu(menu_); }

    std::string texts(HMENU menu)
    {
        std::string all;
        for (int i = 0; i < GetMenuItemCount(menu); i++) {
            char text[16] = {};
            GetMenuStringA(menu, static_cast<UINT>(i), text, sizeof(text), MF_BYPOSITION);
            all += std::string(text) + ";";
        }
        return all;
    }

    const HMENU menu_ = CreatePopupMenu();
    const HMENU below_ = CreateMenu();
};

TEST_F(MenuItems, AreFoundByIdInSubmenusAndByPosition)
{
    EXPECT_EQ(CheckMenuItem(menu_, 10, MF_CHECKED), MF_UNCHECKED);
    EXPECT_EQ(CheckMenuItem(menu_, 10, MF_UNCHECKED), MF_CHECKED);
    EXPECT_EQ(EnableMenuItem(menu_, 0, MF_BYPOSITION | MF_GRAYED), 0);
    EXPECT_EQ(GetMenuState(menu_, 1, MF_BYCOMMAND), MF_GRAYED);
    EXPECT_EQ(GetMenuState(menu_, 1, MF_BYPOSITION), MF_POPUP | 1U << 8);
    EXPECT_EQ(GetMenuItemID(menu_, 0), 1U);
    EXPECT_EQ(GetMenuItemID(menu_, 1), 0xFFFFFFFFU);
    EXPECT_EQ(GetSubMenu(menu_, 1), below_);
    EXPECT_EQ(GetSubMenu(menu_, 0), nullptr);
    EXPECT_TRUE(SetMenuDefaultItem(menu_, 1, FALSE));
    EXPECT_TRUE(GetMenuState(menu_, 1, MF_BYCOMMAND) & MF_DEFAULT);
    EXPECT_TRUE(SetMenuDefaultItem(menu_, 0xFFFFFFFF, FALSE));
    EXPECT_FALSE(GetMenuState(menu_, 1, MF_BYCOMMAND) & MF_DEFAULT);
    char text[3];
    EXPECT_EQ(GetMenuStringA(menu_, 10, text, sizeof(text), MF_BYCOMMAND), 2);
    EXPECT_STREQ(text, "be");
    EXPECT_EQ(GetMenuStringA(menu_, 10, nullptr, 0, MF_BYCOMMAND), 5);
}

TEST_F(MenuItems, RefuseWhatTheyCannotHold)
{
    EXPECT_FALSE(AppendMenuA(below_, MF_POPUP, reinterpret_cast<UINT_PTR>(menu_), "round")); // it would hold itself
    EXPECT_FALSE(AppendMenuA(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(menu_), "round"));
    EXPECT_FALSE(AppendMenuA(menu_, MF_POPUP, 12345, "none"));
    EXPECT_FALSE(AppendMenuA(menu_, 0x4, 5, "a bitmap"));
    EXPECT_FALSE(AppendMenuA(reinterpret_cast<HMENU>(8), MF_STRING, 5, "nowhere"));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(EnableMenuItem(menu_, 77, MF_GRAYED), -1);
    EXPECT_EQ(GetMenuState(menu_, 3, MF_BYPOSITION), 0xFFFFFFFFU);
    EXPECT_EQ(GetMenuItemCount(nullptr), -1);
    EXPECT_EQ(texts(menu_), "one;more;;");
}

TEST_F(MenuItems, TakeTheirSubmenusWithThem)
{
    EXPECT_TRUE(RemoveMenu(menu_, 1, MF_BYPOSITION));
    EXPECT_TRUE(IsMenu(below_)); // its own again
    EXPECT_TRUE(InsertMenuA(menu_, 0, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(below_), "back"));
    EXPECT_EQ(texts(menu_), "back;one;;");
    EXPECT_TRUE(ModifyMenuA(menu_, 0, MF_BYPOSITION, 3, "plain"));
    EXPECT_FALSE(IsMenu(below_));
    const HMENU deep = CreatePopupMenu();
    AppendMenuA(menu_, MF_POPUP, reinterpret_cast<UINT_PTR>(deep), "deep");
    EXPECT_TRUE(DeleteMenu(menu_, 3, MF_BYPOSITION));
    EXPECT_FALSE(IsMenu(deep));
}

} // namespace
