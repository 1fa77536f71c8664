#include <gtest/gtest.h>

#include "art_engine/documents/art_document_classes.h"
#include "art_engine/fonts/art_font_manager.h"
#include "zel_basics/lwbase_object.h"

namespace {

// Every test must destroy the managed objects it makes: the pool keeps object memory reachable, so
// the leak checker cannot see lost objects, and this count does instead. The process's font registry
// lives on by design, filling as fonts are used; it is ended after each test, so that each test starts
// with a fresh one and what it leaves counts.
class object_balance_listener : public testing::EmptyTestEventListener
{
    int32_t LiveAtStart = 0;

    void OnTestStart(const testing::TestInfo &) override { LiveAtStart = ObjectsCreated - ObjectsDestroyed; }
    void OnTestEnd(const testing::TestInfo &) override
    {
        DestroyFontManager();
        EXPECT_EQ(LiveAtStart, ObjectsCreated - ObjectsDestroyed) << "managed objects leaked by this test";
    }
};

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // As a document load would: tests build objects of every class from tags without one.
    ArtAddDocumentMakers();
    testing::UnitTest::GetInstance()->listeners().Append(new object_balance_listener);
    return RUN_ALL_TESTS();
}
