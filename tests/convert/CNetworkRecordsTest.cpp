#include "CNetworkRecords.h"

#include <climits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CBstr.h"
#include "CCallRecord.h"
#include "CHresultException.h"
#include "CLeakCheckedTest.h"
#include "NetworkInterfaceArray.h"
#include "SystemHandles.h"

namespace {

class CNetworkRecordsTest : public CLeakCheckedTest {
protected:
    using Texts = std::vector<std::wstring>;

    [[nodiscard]] CSafeArray Make(const Texts& descriptions, const NetworkArrayShape& shape = {}) {
        std::vector<NetworkInterfaceData> interfaces;
        for (const std::wstring& description : descriptions) {
            interfaces.push_back({description, {}, {}, {}, {}, 0});
        }
        return CSafeArray(MakeNetworkInterfaceArray(m_record, interfaces, shape));
    }
    [[nodiscard]] static Texts Describe(const CNetworkRecords& records) {
        Texts descriptions;
        for (const NetworkInterfaceRecord& record : records) {
            descriptions.emplace_back(ViewBstr(record.description));
        }
        return descriptions;
    }
    /// A description of an array without the array: of one dimension that has `count` elements from `lowerBound` on.
    [[nodiscard]] static SAFEARRAY MakeDescriptor(LONG lowerBound, ULONG count) {
        SAFEARRAY array{};
        array.cDims = 1;
        array.cbElements = sizeof(NetworkInterfaceRecord);
        array.rgsabound[0] = {count, lowerBound};
        return array;
    }
    /// What reading the array throws; S_OK where it does not.
    [[nodiscard]] static HRESULT ThrownBy(SAFEARRAY* array) {
        try {
            const CNetworkRecords records(array);
            return S_OK;
        } catch (const CHresultException& failure) {
            return failure.GetResult();
        }
    }

private:
    std::shared_ptr<CCallRecord> m_record = std::make_shared<CCallRecord>();
};

TEST_F(CNetworkRecordsTest, AreTheArraysElementsWhateverTheLowerBound) {
    for (const LONG lowerBound : {0L, 1L, 5L, -1L, -3L, LONG_MIN, LONG_MAX - 2}) {
        const CSafeArray array = Make({L"one", L"two", L"three"}, {false, 56, 1, lowerBound});

        EXPECT_EQ(Describe(CNetworkRecords(array.Get())), (Texts{L"one", L"two", L"three"})) << lowerBound;
    }
}

TEST_F(CNetworkRecordsTest, LieInTheArrayItself) {
    const CSafeArray array = Make({L"one", L"two"});

    const CNetworkRecords records(array.Get());

    EXPECT_EQ(records.begin(), array.Get()->pvData);
    EXPECT_EQ(records.end() - records.begin(), 2);
}

TEST_F(CNetworkRecordsTest, LockTheArrayWhileTheyLive) {
    const CSafeArray array = Make({L"one"});
    {
        const CNetworkRecords records(array.Get());
        EXPECT_EQ(array.Get()->cLocks, 1U);

        const CNetworkRecords more(array.Get());
        EXPECT_EQ(array.Get()->cLocks, 2U);
    }

    EXPECT_EQ(array.Get()->cLocks, 0U);
}

TEST_F(CNetworkRecordsTest, LeaveALockOfTheOwnersAlone) {
    const CSafeArray array = Make({L"one"});
    ASSERT_EQ(SafeArrayLock(array.Get()), S_OK);

    EXPECT_EQ(Describe(CNetworkRecords(array.Get())), Texts{L"one"});

    EXPECT_EQ(array.Get()->cLocks, 1U);
    SafeArrayUnlock(array.Get());
}

TEST_F(CNetworkRecordsTest, AnArrayWithoutElementsHasNone) {
    for (const LONG lowerBound : {0L, 1L, -4L, LONG_MAX}) {
        const CSafeArray array = Make({}, {false, 56, 1, lowerBound});

        EXPECT_EQ(Describe(CNetworkRecords(array.Get())), Texts{}) << lowerBound;

        EXPECT_EQ(array.Get()->cLocks, 0U) << lowerBound;
    }
}

TEST_F(CNetworkRecordsTest, AnArrayOfAnotherShapeHasNone) {
    for (const NetworkArrayShape& shape :
         {NetworkArrayShape{false, 56, 2, 0}, NetworkArrayShape{false, 56, 3, 0}, NetworkArrayShape{false, 48, 1, 0},
          NetworkArrayShape{false, 64, 1, 0}, NetworkArrayShape{false, 8, 1, 0}, NetworkArrayShape{false, 112, 1, 0}}) {
        const CSafeArray array = Make({L"one", L"two"}, shape);

        EXPECT_EQ(Describe(CNetworkRecords(array.Get())), Texts{}) << shape.elementSize << " " << shape.rank;

        EXPECT_EQ(array.Get()->cLocks, 0U) << shape.elementSize << " " << shape.rank;
    }
}

TEST_F(CNetworkRecordsTest, AnArrayOfSomethingElseHasNone) {
    const CSafeArray numbers(SafeArrayCreateVector(VT_I4, 0, 100));

    EXPECT_EQ(Describe(CNetworkRecords(numbers.Get())), Texts{});

    EXPECT_EQ(numbers.Get()->cLocks, 0U);
}

TEST_F(CNetworkRecordsTest, AnArrayWithoutDataHasNone) {
    SAFEARRAY array = MakeDescriptor(0, 4);
    {
        const CNetworkRecords records(&array);

        EXPECT_EQ(records.begin(), records.end());
    }

    EXPECT_EQ(array.cLocks, 0U);
}

TEST_F(CNetworkRecordsTest, AnArrayThatCannotBeLockedHasNone) {
    const CSafeArray array = Make({L"one"});
    array.Get()->cLocks = USHRT_MAX;

    EXPECT_EQ(Describe(CNetworkRecords(array.Get())), Texts{});

    EXPECT_EQ(array.Get()->cLocks, USHRT_MAX);
    array.Get()->cLocks = 0;
}

TEST_F(CNetworkRecordsTest, NoArrayHasNoBoundsAndThrows) {
    EXPECT_EQ(ThrownBy(nullptr), E_INVALIDARG);
}

TEST_F(CNetworkRecordsTest, AnArrayWithoutDimensionsThrowsWhatItsBoundsDo) {
    SAFEARRAY array{};
    LONG bound = 0;
    const HRESULT expected = SafeArrayGetLBound(&array, 1, &bound);
    ASSERT_EQ(expected, DISP_E_BADINDEX);

    EXPECT_EQ(ThrownBy(&array), expected);

    EXPECT_EQ(array.cLocks, 0U);
}

}  // namespace
