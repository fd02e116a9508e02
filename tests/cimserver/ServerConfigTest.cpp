// The command line, the configuration file, and the registration read at start-up.
#include <gtest/gtest.h>

#include "cimserver/ProviderRegistration.h"
#include "cimserver/RepositoryLoader.h"
#include "cimserver/ServerConfig.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace ksv::server {
namespace {

ParsedCommandLine parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "ksv-cimserver");
    return parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(ServerConfigTest, TheConfigurationFileAndThenTheCommandLineOverrideTheDefaults) {
    ParsedCommandLine defaults = parse({});
    ASSERT_TRUE(defaults.config);
    EXPECT_EQ(defaults.config->http.port, 5988);
    EXPECT_EQ(defaults.config->mofFiles, std::vector<std::string>{"standalone.mof"});
    EXPECT_EQ(defaults.config->registrationNamespace, "root/PG_InterOp");
    EXPECT_FALSE(defaults.config->providerDirectories.empty());
    EXPECT_FALSE(defaults.config->http.socketPath.empty());

    std::string path = ::testing::TempDir() + "ksv-cimserver-" + std::to_string(getpid()) + ".conf";
    std::ofstream(path)
        << "port = 7000\nthreads = 2\nmof = [\"x.mof\", \"y.mof\"]\nlog-level = 2\n";
    ParsedCommandLine parsed =
        parse({"--config", path.c_str(), "--socket", "", "--threads", "3", "--provider-dir", "/p",
               "--log-level", "4", "--max-request-size", "1024"});
    std::remove(path.c_str());
    ASSERT_TRUE(parsed.config);
    EXPECT_EQ(parsed.config->http.port, 7000);
    EXPECT_EQ(parsed.config->mofFiles, (std::vector<std::string>{"x.mof", "y.mof"}));
    EXPECT_TRUE(parsed.config->http.socketPath.empty());
    EXPECT_EQ(parsed.config->threads, 3u);
    EXPECT_EQ(parsed.config->providerDirectories, std::vector<std::string>{"/p"});
    EXPECT_EQ(parsed.config->logLevel, 4);
    EXPECT_EQ(parsed.config->http.maxRequestBytes, 1024u);
}

// The example file is for a server started from the top of the tree after a plain build; this
// test may run in another flavour's build directory.
TEST(ServerConfigTest, TheExampleConfigurationNamesWhatTheTreeAndItsBuildHold) {
    const std::string top = KSV_SOURCE_DIR;
    const std::string file = top + "/src/cimserver/ksv-cimserver.conf";
    ParsedCommandLine parsed = parse({"--config", file.c_str()});
    ASSERT_TRUE(parsed.config) << parsed.output;
    EXPECT_TRUE(std::filesystem::is_regular_file(top + "/" + parsed.config->arrayModel));
    EXPECT_TRUE(std::filesystem::is_directory(top + "/" + parsed.config->mofDirectory));
    ASSERT_FALSE(parsed.config->providerDirectories.empty());
    for (const std::string& directory : parsed.config->providerDirectories) {
        ASSERT_EQ(directory.rfind("build/", 0), 0u) << directory;
        EXPECT_TRUE(std::filesystem::is_directory(KSV_BINARY_DIR + directory.substr(5)))
            << directory;
    }
}

TEST(ServerConfigTest, HelpMistakesAndAnUnreadableArrayModelEndTheProgram) {
    ParsedCommandLine help = parse({"--help"});
    EXPECT_FALSE(help.config);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("--array-model"), std::string::npos);
    ParsedCommandLine wrong = parse({"--threads", "0"});
    EXPECT_FALSE(wrong.config);
    EXPECT_NE(wrong.exitCode, 0);
    EXPECT_FALSE(parse({"--no-such-option"}).config);

    ServerConfig config = defaultServerConfig();
    config.arrayModel = "/nonexistent/array.json";
    std::optional<std::string> error = configureArray(config);
    ASSERT_TRUE(error);
    EXPECT_NE(error->find("/nonexistent/array.json"), std::string::npos);
}

ProviderRegistration registrationOf(const ServerConfig& config) {
    std::vector<std::string> warnings;
    return readProviderRegistration(loadRepository(config, warnings), "root/PG_InterOp");
}

TEST(ServerConfigTest, TheDefaultRegistrationIsReadAndAnIncompleteOneRefused) {
    ProviderRegistration registration = registrationOf(defaultServerConfig());
    EXPECT_EQ(
        std::count_if(registration.providers.begin(), registration.providers.end(),
                      [](const auto& p) { return p.moduleName == "KSV_DiskDriveProviderModule"; }),
        12);
    ServerConfig config = defaultServerConfig();
    config.mofFiles.clear();
    config.registrationFiles = {KSV_TEST_MOF_DIR "/KSV_BrokenRegistration.mof"};
    EXPECT_THROW(registrationOf(config), RegistrationError);
}

} // namespace
} // namespace ksv::server
