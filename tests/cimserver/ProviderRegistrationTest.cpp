// Reading the provider registration from the repository.
#include <gtest/gtest.h>

#include "cimserver/ProviderRegistration.h"
#include "cimserver/RepositoryLoader.h"
#include "cimserver/ServerConfig.h"

using ksv::server::ProviderRegistration;
using ksv::server::ProviderType;

namespace {

ProviderRegistration registrationOf(ksv::server::ServerConfig config) {
    std::vector<std::string> warnings;
    ksv::mof::ClassRepository repository = ksv::server::loadRepository(config, warnings);
    return ksv::server::readProviderRegistration(repository, "root/PG_InterOp");
}

TEST(ProviderRegistrationTest, TheShippedRegistrationNamesTheDiskModuleAndItsProviders) {
    ProviderRegistration registration = registrationOf(ksv::server::defaultServerConfig());
    auto module =
        std::find_if(registration.modules.begin(), registration.modules.end(),
                     [](const auto& m) { return m.name == "KSV_DiskDriveProviderModule"; });
    ASSERT_NE(module, registration.modules.end());
    EXPECT_EQ(module->location, "KSV_DiskDriveProvider");
    std::size_t diskProviders =
        std::count_if(registration.providers.begin(), registration.providers.end(),
                      [](const auto& p) { return p.moduleName == "KSV_DiskDriveProviderModule"; });
    EXPECT_EQ(diskProviders, 12u);
    auto systemDisk =
        std::find_if(registration.capabilities.begin(), registration.capabilities.end(),
                     [](const auto& c) { return c.providerName == "KSV_SystemDiskProvider"; });
    ASSERT_NE(systemDisk, registration.capabilities.end());
    EXPECT_TRUE(systemDisk->serves(ProviderType::Instance));
    EXPECT_TRUE(systemDisk->serves(ProviderType::Association));
    EXPECT_FALSE(systemDisk->serves(ProviderType::Method));
}

TEST(ProviderRegistrationTest, AnIncompleteRegistrationIsRefused) {
    ksv::server::ServerConfig config = ksv::server::defaultServerConfig();
    config.mofFiles.clear();
    config.registrationFiles = {KSV_TEST_MOF_DIR "/KSV_BrokenRegistration.mof"};
    EXPECT_THROW(registrationOf(config), ksv::server::RegistrationError);
}

} // namespace
