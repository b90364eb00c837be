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
        hKept = list.Detach();
        EXPECT_EQ(list.GetSafeHandle(), nullptr);
    }
    EXPECT_TRUE(ImageList_Destroy(hKept)) << "given away";
}
