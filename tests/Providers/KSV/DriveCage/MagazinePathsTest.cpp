// The magazine paths that the magazine-container association points at.
#include "DriveCage/KSV_MagazineProvider.h"

#include <gtest/gtest.h>

#include <string>

namespace ksv::test {
namespace {

using namespace Pegasus;

std::string text(const String& value) {
    return std::string(value.getCString());
}

TEST(MagazinePaths, AreNamedByClassAndTheMagazinesDeviceID) {
    EXPECT_EQ(
        text(KSV_MagazineProvider::buildObjectPath("KSV_DiskBay", "ksv-d7", "KSV-D7-DC3-M0")
                 .toString()),
        "//ksv-d7/root/ksv:KSV_DiskBay.CreationClassName=\"KSV_DiskBay\",Tag=\"KSV-D7-DC3-M0\"");
}

TEST(MagazinePaths, DriveBaysTakeThePlaceOfMagazinesInCageTypesSixToEight) {
    for (int cageType = -1; cageType <= 9; cageType++) {
        const bool bay = cageType >= 6 && cageType <= 8;
        EXPECT_EQ(text(KSV_MagazineProvider::_getCIMName(cageType).getString()),
                  bay ? "KSV_DiskBay" : "KSV_Magazine")
            << cageType;
    }
}

} // namespace
} // namespace ksv::test
