// Addresses with https against the server of the program openssl, whose certificate nobody has signed.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace
{
using CInternetReaderTLSTest = ReaderTest;

TEST_F(CInternetReaderTLSTest, AnUnknownCertificateIsRefused)
{
    if (dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL) == nullptr || system("command -v openssl >/dev/null") != 0)
        GTEST_SKIP() << "libcurl.so.4 or openssl is not installed";
    const ToolsFolder folder;
    folder.Write("film", "sealed");
    setenv("no_proxy", "localhost,127.0.0.1", 1);
    // It prints its port, and ends with the third connection.
    const std::string start = "cd '" + folder.PathOf("") +
                              "' && openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost "
                              "-addext subjectAltName=DNS:localhost -keyout key -out certificate 2>openssl.log && "
                              "exec timeout 30 openssl s_server -4 -accept 0 -naccept 3 -WWW -cert certificate -key key 2>&1";
    const std::unique_ptr<FILE, int (*)(FILE*)> server(popen(start.c_str(), "r"), pclose);
    int port = 0;
    for (char line[256]; port == 0 && fgets(line, sizeof line, server.get()) != nullptr;)
        sscanf(line, "ACCEPT %*[0-9.]:%d", &port);
    ASSERT_NE(port, 0);
    const auto make = [port](const wchar_t* host)
    {
        ReaderPointer reader(CreateGenericReaderDLL(ZVFormat(L"https://%s:%d/film", host, port)));
        reader->SetTimeout(5000);
        return reader;
    };
    const ReaderPointer unknown = make(L"localhost");
    EXPECT_FALSE(unknown->Open());
    EXPECT_TRUE(unknown->HasFailed());
    EXPECT_THAT(TakeLog(), testing::HasSubstr("certificate"));

    setenv("SSL_CERT_FILE", folder.PathOf("certificate").c_str(), 1);
    const ReaderPointer known = make(L"localhost");
    EXPECT_TRUE(known->Open()) << TakeLog();
    EXPECT_EQ(ReadAll(*known), "sealed");
    EXPECT_FALSE(make(L"127.0.0.1")->Open()) << "the certificate is another host's";
    unsetenv("SSL_CERT_FILE");
    unsetenv("no_proxy");
}
}
