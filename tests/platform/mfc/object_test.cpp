#include <afx.h>

#include <gtest/gtest.h>

#include <memory>

namespace shapes {

class Shape : public CObject {
    DECLARE_DYNAMIC(Shape)
    virtual int Sides() const = 0;
};

class Square : public Shape {
    DECLARE_DYNCREATE(Square)
    int Sides() const override { return 4; }
};

IMPLEMENT_DYNAMIC(Shape, CObject)
IMPLEMENT_DYNCREATE(Square, Shape)

} // namespace shapes

namespace {

TEST(CObject, KnowsItsClassAndTheClassesAbove)
{
    CRuntimeClass* const pSquare = RUNTIME_CLASS(shapes::Square);
    EXPECT_STREQ(pSquare->m_lpszClassName, "Square");
    const std::unique_ptr<CObject> object(pSquare->CreateObject());
    ASSERT_TRUE(object);
    EXPECT_EQ(object->GetRuntimeClass(), pSquare);
    EXPECT_TRUE(object->IsKindOf(RUNTIME_CLASS(shapes::Shape)) && object->IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(object->IsKindOf(RUNTIME_CLASS(CException)));
    EXPECT_EQ(DYNAMIC_DOWNCAST(shapes::Shape, object.get())->Sides(), 4);
    EXPECT_EQ(DYNAMIC_DOWNCAST(CException, object.get()), nullptr);
    EXPECT_EQ(RUNTIME_CLASS(shapes::Shape)->CreateObject(), nullptr) << "the class was declared dynamic only";
}

} // namespace
