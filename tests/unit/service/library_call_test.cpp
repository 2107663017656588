#include "krvcmd/service/access/session.h"

#include <cstring>
#include <type_traits>

#include "tests/support/service_fixture.h"

namespace krvcmd {
namespace {

using test::Text;

// A context holds its own address, so a copy would write its error into the original.
static_assert(!std::is_copy_constructible_v<CallContext> && !std::is_copy_assignable_v<CallContext>);
static_assert(!std::is_move_constructible_v<CallContext> && !std::is_move_assignable_v<CallContext>);

class LibraryCallTest : public test::ServiceTest {};

TEST_F(LibraryCallTest, PreparesAContextForOneCall) {
    CallContext prepared(0x1122334455667788);
    const KrvCallContext& context = *prepared.Get();
    EXPECT_EQ(context.headSize, 24U);
    EXPECT_EQ(context.session, 0x1122334455667788U);
    EXPECT_EQ(context.errorInfo, &context.error);
    EXPECT_EQ(context.error.size, 1032U);
    EXPECT_EQ(context.error.code, 0);
    for (const char c : context.error.text)
        EXPECT_EQ(c, '\0');
}

TEST_F(LibraryCallTest, HandsOverTheSessionOfTheMoment) {
    const auto sessionOfACall = [] {
        KrvSession seen = 99;
        EXPECT_TRUE(CallLibrary([&seen](KrvCallContext* context) {
                        seen = context->session;
                        return 1;
                    }).IsOk());
        return seen;
    };
    EXPECT_EQ(sessionOfACall(), 0U);
    GetSession() = 7;
    EXPECT_EQ(sessionOfACall(), 7U);
}

TEST_F(LibraryCallTest, TakesEveryResultButZeroAsSuccess) {
    for (const KrvBool result : {1, 2, -1, 0x7FFFFFFF}) {
        EXPECT_EQ(Text(CallLibrary([result](KrvCallContext*) { return result; })), "OK") << result;
    }
}

TEST_F(LibraryCallTest, TurnsZeroIntoTheServiceErrorOfTheContext) {
    const Status status = CallLibrary([](KrvCallContext* context) {
        context->errorInfo->code = 501;
        std::strcpy(context->errorInfo->text, "The slot is empty.");
        return 0;
    });
    EXPECT_EQ(Text(status), "service error 501: The slot is empty.");
}

TEST_F(LibraryCallTest, IgnoresAnErrorThatASuccessfulCallHasLeft) {
    const Status status = CallLibrary([](KrvCallContext* context) {
        context->errorInfo->code = 501;
        return 1;
    });
    EXPECT_EQ(Text(status), "OK");
}

TEST_F(LibraryCallTest, MakesAServiceErrorOfAFailureWithoutCodeAndText) {
    EXPECT_EQ(Text(CallLibrary([](KrvCallContext*) { return 0; })), "service error 0: ");
}

TEST_F(LibraryCallTest, TakesServiceCodesAsUnsignedNumbers) {
    const Status status = CallLibrary([](KrvCallContext* context) {
        context->errorInfo->code = -1;
        return 0;
    });
    EXPECT_EQ(status.Code(), 4294967295U);
}

TEST_F(LibraryCallTest, EndsAnErrorTextWithItsFieldWhenItHasNoNul) {
    const Status status = CallLibrary([](KrvCallContext* context) {
        std::memset(context->errorInfo->text, 'x', sizeof(context->errorInfo->text));
        return 0;
    });
    EXPECT_EQ(status.Message(), std::string(1024, 'x'));
}

TEST_F(LibraryCallTest, BuildsAFreshContextForEachCall) {
    for (int i = 0; i < 2; ++i) {
        const Status status = CallLibrary([](KrvCallContext* context) {
            EXPECT_EQ(context->errorInfo->code, 0);
            EXPECT_EQ(context->errorInfo->text[0], '\0');
            context->errorInfo->code = 9;
            context->errorInfo->text[0] = 'x';
            return 0;
        });
        EXPECT_EQ(Text(status), "service error 9: x");
    }
}

}  // namespace
}  // namespace krvcmd
