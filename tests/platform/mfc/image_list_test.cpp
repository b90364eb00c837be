#include <afxcmn.h>

#include <gtest/gtest.h>

TEST(CImageList, OwnsItsList)
{
    HIMAGELIST hFirst = nullptr;
    HIMAGELIST hKept = nullptr;
    {
        CImageList list;
        EXPECT_FALSE(list.Attach(nullptr));
        EXPECT_FALSE(list.DeleteImageList());
        ASSERT_TRUE(list.Create(4, 4, ILC_COLOR24 | ILC_MASK, 1, 1));
        hFirst = list.GetSafeHandle();
        EXPECT_FALSE(list.Create(0, 4, ILC_COLOR24 | ILC_MASK, 1, 1));
        EXPECT_EQ(list.GetSafeHandle(), hFirst) << "a failure leaves it alone";
        EXPECT_TRUE(list.Create(8, 8, ILC_COLOR24 | ILC_MASK, 1, 1));
        EXPECT_FALSE(ImageList_Destroy(hFirst)) << "it went when the next came";

        CBitmap bmpStrip;
        bmpStrip.CreateBitmap(17, 8, 1, 32, nullptr);
        EXPECT_EQ(list.Add(&bmpStrip, RGB(255, 0, 0)), 0);
        EXPECT_EQ(list.GetImageCount(), 2);
        const HICON hIcon = list.ExtractIcon(1);
        EXPECT_EQ(list.Add(hIcon), 2);
        EXPECT_TRUE(DestroyIcon(hIcon));
        EXPECT_EQ(list.ExtractIcon(3), nullptr);
        EXPECT_TRUE(list.Remove(0));
        EXPECT_EQ(list.GetImageCount(), 2);
        hKept = list.Detach();
        EXPECT_EQ(list.GetSafeHandle(), nullptr);
    }
    EXPECT_TRUE(ImageList_Destroy(hKept)) << "given away";
}
