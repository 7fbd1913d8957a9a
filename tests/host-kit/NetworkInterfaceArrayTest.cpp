#include "NetworkInterfaceArray.h"

#include "HostKitFixture.h"
#include "NetworkInterfaceRecord.h"

namespace {

class NetworkInterfaceArrayTest : public CHostKitTest {
protected:
    [[nodiscard]] SAFEARRAY* GetArray(const NetworkArrayShape& shape = {}, std::size_t count = 2) {
        SystemData data;
        for (std::size_t i = 0; i < count; ++i) {
            data.networkInterfaces.push_back(
                {L"eth" + std::to_wstring(i), L"00-11", L"10.0.0.1", L"255.0.0.0", L"10.0.0.0", 1000});
        }
        data.networkArray = shape;
        SAFEARRAY* array = nullptr;
        EXPECT_EQ(MakeSystemInfo(m_record, data)->get_networkInterfaces(&array), S_OK);
        return array;
    }

    [[nodiscard]] static std::string ReadDescription(SAFEARRAY* array, LONG index) {
        NetworkInterfaceRecord* record = nullptr;
        const HRESULT result = SafeArrayPtrOfIndex(array, &index, reinterpret_cast<void**>(&record));
        return result == S_OK ? DescribeText(record->description) : DescribeResult(result);
    }
};

TEST_F(NetworkInterfaceArrayTest, HoldsARecordForEachAdapter) {
    SAFEARRAY* const array = GetArray();

    LONG lower = -1;
    LONG upper = -1;
    EXPECT_EQ(SafeArrayGetDim(array), 1U);
    EXPECT_EQ(SafeArrayGetElemsize(array), sizeof(NetworkInterfaceRecord));
    EXPECT_EQ(SafeArrayGetLBound(array, 1, &lower), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
    EXPECT_EQ(lower, 0);
    EXPECT_EQ(upper, 1);
    const auto& record = static_cast<const NetworkInterfaceRecord*>(array->pvData)[1];
    EXPECT_EQ(DescribeText(record.description), "eth1");
    EXPECT_EQ(DescribeText(record.macAddress), "00-11");
    EXPECT_EQ(DescribeText(record.ipAddress), "10.0.0.1");
    EXPECT_EQ(DescribeText(record.subnetMask), "255.0.0.0");
    EXPECT_EQ(DescribeText(record.subnet), "10.0.0.0");
    EXPECT_EQ(record.linkSpeed, 1000);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, DestroyingItReleasesEveryText) {
    const long blocksBefore = CResourceLedger::Get().Count().comBlocks;
    SAFEARRAY* const array = GetArray();
    const long blocksWith = CResourceLedger::Get().Count().comBlocks;

    EXPECT_EQ(SafeArrayDestroy(array), S_OK);

    EXPECT_GE(blocksWith - blocksBefore, 10);  // five texts in each of two records, and the array's own
    EXPECT_EQ(CResourceLedger::Get().Count().comBlocks, blocksBefore);
    EXPECT_EQ(m_record->DescribeLeftovers(), "");
}

TEST_F(NetworkInterfaceArrayTest, AnArrayThatIsKeptShowsAmongTheLeftovers) {
    SAFEARRAY* const array = GetArray();

    EXPECT_EQ(m_record->DescribeLeftovers(), "1 of Network record; 1 references to IRecordInfo; ");
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, ACopyHasTextsOfItsOwn) {
    SAFEARRAY* const array = GetArray();
    SAFEARRAY* copy = nullptr;

    ASSERT_EQ(SafeArrayCopy(array, &copy), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);

    EXPECT_EQ(ReadDescription(copy, 0), "eth0");
    EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, AVariantThatHoldsItClearsIt) {
    VARIANT value{};
    value.vt = VT_ARRAY | VT_RECORD;
    value.parray = GetArray();

    EXPECT_EQ(VariantClear(&value), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, CanBeNull) {
    NetworkArrayShape shape;
    shape.isNull = true;

    EXPECT_EQ(GetArray(shape), nullptr);
}

TEST_F(NetworkInterfaceArrayTest, CanBeEmpty) {
    SAFEARRAY* const array = GetArray({}, 0);

    LONG upper = 0;
    EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
    EXPECT_EQ(upper, -1);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, CanBeginElsewhere) {
    NetworkArrayShape shape;
    shape.lowerBound = 5;
    SAFEARRAY* const array = GetArray(shape);

    EXPECT_EQ(ReadDescription(array, 4), DescribeResult(DISP_E_BADINDEX));
    EXPECT_EQ(ReadDescription(array, 5), "eth0");
    EXPECT_EQ(ReadDescription(array, 6), "eth1");
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, CanHaveAnotherRank) {
    NetworkArrayShape shape;
    shape.rank = 2;
    SAFEARRAY* const array = GetArray(shape);

    EXPECT_EQ(SafeArrayGetDim(array), 2U);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(NetworkInterfaceArrayTest, CanHaveElementsOfAnotherSize) {
    for (const ULONG size : {8U, 20U, 48U, 64U}) {
        NetworkArrayShape shape;
        shape.elementSize = size;
        SAFEARRAY* const array = GetArray(shape);

        EXPECT_EQ(SafeArrayGetElemsize(array), size);
        EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    }
}

}  // namespace
