#include "tests/platform/mfc/Throws.h"

#include <afxtempl.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace {

using StringMap = CMap<CString, LPCSTR, int, int>;

std::string Walk(const StringMap& map)
{
    std::string walked;
    for (POSITION pos = map.GetStartPosition(); pos;) {
        CString strKey;
        int nValue = 0;
        map.GetNextAssoc(pos, strKey, nValue);
        walked.append(strKey).append("=").append(std::to_string(nValue)).append(" ");
    }
    return walked;
}

TEST(CMap, HashesTextWithSignedBytes)
{
    EXPECT_EQ(HashKey<LPCSTR>("ab"), 97U * 33 + 98);
    EXPECT_EQ(HashKey<LPCSTR>("\xff"), 0U - 1);
    EXPECT_EQ(HashKey<const CString&>(CString("\xc4\xe3")), HashKey<LPCSTR>("\xc4\xe3"));
    EXPECT_EQ(HashKey<int>(0x125), 0x12U);
}

TEST(CMap, IsWalkedByBucketAndNewestFirst)
{
    StringMap map;
    EXPECT_EQ(map.GetHashTableSize(), 17U);
    EXPECT_EQ(map.GetStartPosition(), nullptr);
    // One byte b lies in bucket b modulo 17: 'D' (68) and 'U' (85) in 0, 'E' (69) and 'V' in 1, 'T' (84) in 16.
    const char* const kKeys[] = { "T", "D", "E", "U", "V" };
    for (int i = 0; i < 5; i++)
        map.SetAt(kKeys[i], i);
    EXPECT_EQ(Walk(map), "U=3 D=1 V=4 E=2 T=0 ");

    map["D"] = 9; // keeps its place
    EXPECT_EQ(Walk(map), "U=3 D=9 V=4 E=2 T=0 ");
    EXPECT_TRUE(map.RemoveKey("U"));
    EXPECT_FALSE(map.RemoveKey("U"));
    map.SetAt("U", 5);
    EXPECT_EQ(Walk(map), "U=5 D=9 V=4 E=2 T=0 ");

    int nValue = -1;
    EXPECT_FALSE(map.Lookup("X", nValue));
    EXPECT_EQ(nValue, -1);
    EXPECT_EQ(map["X"], 0) << "a new value is a default one";
    EXPECT_TRUE(map.Lookup("X", nValue));

    map.RemoveAll();
    map.InitHashTable(2);
    map.SetAt("D", 1), map.SetAt("E", 2), map.SetAt("U", 3);
    map.InitHashTable(17); // too late
    EXPECT_EQ(Walk(map), "D=1 U=3 E=2 ");
}

TEST(CMap, AgreesWithAPlainMap)
{
    std::mt19937 random(1);
    CMap<int, int, CString, LPCSTR> map(3);
    std::map<int, std::string> model;
    for (int turn = 0; turn < 20000; turn++) {
        const int nKey = static_cast<int>(random() % 2000);
        const std::string value = std::to_string(turn);
        switch (random() % 3) {
        case 0:
            map.SetAt(nKey, value.c_str());
            model[nKey] = value;
            break;
        case 1:
            EXPECT_EQ(map.RemoveKey(nKey), static_cast<BOOL>(model.erase(nKey)));
            break;
        default:
            CString strFound("none");
            const auto found = model.find(nKey);
            EXPECT_EQ(map.Lookup(nKey, strFound), found != model.end());
            EXPECT_STREQ(strFound, found == model.end() ? "none" : found->second.c_str());
        }
        ASSERT_EQ(map.GetCount(), static_cast<int>(model.size()));
    }
}

std::string Walk(const CList<CString, const CString&>& list)
{
    std::string forward;
    for (POSITION pos = list.GetHeadPosition(); pos;)
        forward.append(list.GetNext(pos));
    std::string backward;
    for (POSITION pos = list.GetTailPosition(); pos;)
        backward.insert(0, list.GetPrev(pos));
    EXPECT_EQ(forward, backward);
    EXPECT_EQ(forward.size(), static_cast<size_t>(list.GetCount()));
    return forward;
}

TEST(CList, KeepsItsOrder)
{
    CList<CString, const CString&> list(2);
    list.AddTail("b");
    const POSITION posC = list.AddTail("c");
    list.AddHead("a");
    EXPECT_EQ(Walk(list), "abc");
    list.InsertBefore(posC, "x");
    list.InsertAfter(posC, "y");
    list.InsertAfter(nullptr, "z");
    list.InsertBefore(nullptr, "_");
    EXPECT_EQ(Walk(list), "_abxcyz");
    EXPECT_EQ(list.FindIndex(4), posC);
    EXPECT_EQ(list.FindIndex(7), nullptr);
    EXPECT_EQ(list.Find("c"), posC);
    EXPECT_EQ(list.Find("a", posC), nullptr);
    list.RemoveAt(posC);
    EXPECT_STREQ(list.RemoveHead(), "_");
    EXPECT_STREQ(list.RemoveTail(), "z");
    EXPECT_EQ(Walk(list), "abxy");
    list.AddTail(&list);
    EXPECT_EQ(Walk(list), "abxyabxy");
    CList<CString, const CString&> listHead;
    listHead.AddHead(&list);
    listHead.AddHead(&listHead);
    EXPECT_EQ(Walk(listHead), "abxyabxyabxyabxy");
    list.RemoveAll();
    EXPECT_EQ(Walk(list), "");
    list.AddHead("q");
    EXPECT_EQ(Walk(list), "q");
}

TEST(CList, EndsTheProcessOnAnEndThatIsNotThere)
{
    CPtrList list;
    EXPECT_DEATH((void)list.GetHead(), "");
    EXPECT_DEATH(list.RemoveTail(), "");
}

std::string Joined(const CArray<CString, CString&>& array)
{
    std::string joined;
    for (int i = 0; i < array.GetSize(); i++)
        joined.append(array[i]).append(",");
    return joined;
}

TEST(CArray, GrowsAndShrinks)
{
    CArray<CString, CString&> array;
    CString strA("a"), strB("b"), strC("c");
    EXPECT_EQ(array.Add(strA), 0);
    for (int i = 0; i < 3; i++)
        array.Add(array[0]); // moves while it is read
    array.SetAt(1, strB);
    EXPECT_EQ(Joined(array), "a,b,a,a,");
    array.SetAtGrow(5, array[1]);
    EXPECT_EQ(Joined(array), "a,b,a,a,,b,");
    array.InsertAt(1, array[5], 2);
    array.InsertAt(9, strC);
    EXPECT_EQ(Joined(array), "a,b,b,b,a,a,,b,,c,");
    array.RemoveAt(0, 7);
    EXPECT_EQ(Joined(array), "b,,c,");
    EXPECT_EQ(array.Append(array), 3);
    EXPECT_EQ(Joined(array), "b,,c,b,,c,");
    array.SetSize(1);
    EXPECT_EQ(array.GetUpperBound(), 0);
    array.SetSize(-1);
    EXPECT_TRUE(array.IsEmpty());
}

TEST(CArray, BearsWhatCannotBe)
{
    CArray<CString, const CString&> array;
    array.Add("kept");
    EXPECT_DEATH((void)array[1], "");
    EXPECT_DEATH((void)array[-1], "");
    EXPECT_DEATH(array.RemoveAt(0, 2), "");

    struct Large {
        char bytes[size_t{ 1 } << 33];
    };
    CArray<Large> arrayLarge;
    EXPECT_TRUE(Throws<CMemoryException>([&] { arrayLarge.SetSize(0x7fffffff); }));
    EXPECT_EQ(arrayLarge.GetSize(), 0);
}

} // namespace
