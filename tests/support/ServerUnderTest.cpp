#include "ServerUnderTest.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace ksv::test {

TemporaryDirectory::TemporaryDirectory()
    : _path((std::filesystem::temp_directory_path() / "ksv-test-XXXXXX").string()) {
    if (mkdtemp(_path.data()) == nullptr)
        throw std::runtime_error("cannot create a temporary directory");
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

TemporaryFile::TemporaryFile(const std::string& content) : _path(_directory.path() + "/file") {
    std::ofstream(_path) << content;
}

std::unique_ptr<Pegasus::CIMClient> ServerUnderTest::client(const std::string& user,
                                                            const std::string& password) const {
    auto client = std::make_unique<Pegasus::CIMClient>();
    client->connect("127.0.0.1", port(), user.c_str(), password.c_str());
    return client;
}

std::string cimErrorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Pegasus::CIMException& error) {
        return std::string(error.getMessage().getCString());
    } catch (const Pegasus::Exception& error) {
        return "client error: " + std::string(error.getMessage().getCString());
    }
    return "no exception";
}

} // namespace ksv::test
