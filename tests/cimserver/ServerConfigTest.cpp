// The command line and the configuration file.
#include <gtest/gtest.h>

#include "cimserver/ServerConfig.h"

#include <cstdio>
#include <fstream>
#include <unistd.h>

using ksv::server::parseCommandLine;
using ksv::server::ParsedCommandLine;

namespace {

ParsedCommandLine parse(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "ksv-cimserver");
    return parseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(ServerConfigTest, DefaultsServeTheShippedMofOnTheStandardPort) {
    ParsedCommandLine parsed = parse({});
    ASSERT_TRUE(parsed.config);
    EXPECT_EQ(parsed.config->http.port, 5988);
    EXPECT_EQ(parsed.config->mofFiles, std::vector<std::string>{"standalone.mof"});
    EXPECT_EQ(parsed.config->registrationNamespace, "root/PG_InterOp");
    EXPECT_FALSE(parsed.config->providerDirectories.empty());
    EXPECT_FALSE(parsed.config->http.socketPath.empty());
}

TEST(ServerConfigTest, OptionsOverrideTheDefaults) {
    ParsedCommandLine parsed = parse({"--port", "6000", "--socket", "", "--threads", "3", "--mof",
                                      "a.mof", "--mof", "root/x=b.mof", "--provider-dir", "/p",
                                      "--log-level", "4", "--max-request-size", "1024"});
    ASSERT_TRUE(parsed.config);
    EXPECT_EQ(parsed.config->http.port, 6000);
    EXPECT_TRUE(parsed.config->http.socketPath.empty());
    EXPECT_EQ(parsed.config->threads, 3u);
    EXPECT_EQ(parsed.config->mofFiles, (std::vector<std::string>{"a.mof", "root/x=b.mof"}));
    EXPECT_EQ(parsed.config->providerDirectories, std::vector<std::string>{"/p"});
    EXPECT_EQ(parsed.config->logLevel, 4);
    EXPECT_EQ(parsed.config->http.maxRequestBytes, 1024u);
}

TEST(ServerConfigTest, AConfigurationFileSetsWhatTheCommandLineDoesNot) {
    char path[] = "/tmp/ksv-cimserver-config-XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    std::ofstream(path) << "port = 7000\nthreads = 2\nmof = [\"x.mof\", \"y.mof\"]\n";
    ParsedCommandLine parsed = parse({"--config", path, "--threads", "5"});
    std::remove(path);
    ASSERT_TRUE(parsed.config);
    EXPECT_EQ(parsed.config->http.port, 7000);
    EXPECT_EQ(parsed.config->threads, 5u);
    EXPECT_EQ(parsed.config->mofFiles, (std::vector<std::string>{"x.mof", "y.mof"}));
}

TEST(ServerConfigTest, HelpAndMistakesEndTheProgram) {
    ParsedCommandLine help = parse({"--help"});
    EXPECT_FALSE(help.config);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("--array-model"), std::string::npos);

    ParsedCommandLine wrong = parse({"--threads", "0"});
    EXPECT_FALSE(wrong.config);
    EXPECT_NE(wrong.exitCode, 0);
    EXPECT_FALSE(parse({"--no-such-option"}).config);
}

TEST(ServerConfigTest, AnUnreadableArrayModelIsReported) {
    ksv::server::ServerConfig config = ksv::server::defaultServerConfig();
    config.arrayModel = "/nonexistent/array.json";
    std::optional<std::string> error = ksv::server::configureArray(config);
    ASSERT_TRUE(error);
    EXPECT_NE(error->find("/nonexistent/array.json"), std::string::npos);
}

} // namespace
