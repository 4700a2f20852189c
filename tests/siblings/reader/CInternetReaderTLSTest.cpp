// Addresses with https against the server of the program openssl, whose certificate nobody has signed.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/tools/ToolsFolder.h"
#include "support/ZVTestServer.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace
{
using CInternetReaderTLSTest = ReaderTest;

TEST_F(CInternetReaderTLSTest, KeepsWhatIsSealedSealed)
{
    if (dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL) == nullptr || system("command -v openssl >/dev/null") != 0)
        GTEST_SKIP() << "libcurl.so.4 or openssl is not installed";
    ZVTestServer plain;
    plain.SetAnswer("/plain", {.Body = "for everyone to see"});
    const ToolsFolder folder;
    folder.Write("film", "HTTP/1.0 200 OK\r\n\r\nsealed");
    folder.Write("away", "HTTP/1.0 302 Found\r\nLocation: " + std::string(ZVStringUTF8(plain.GetURL("/plain"))) + "\r\n\r\n");
    // It prints its port, and ends with the fourth connection.
    const std::string start = "cd '" + folder.PathOf("") +
                              "' && openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost "
                              "-addext subjectAltName=DNS:localhost -keyout key -out certificate 2>openssl.log && "
                              "exec timeout 30 openssl s_server -4 -accept 0 -naccept 4 -HTTP -cert certificate -key key 2>&1";
    const std::unique_ptr<FILE, int (*)(FILE*)> server(popen(start.c_str(), "r"), pclose);
    int port = 0;
    for (char line[256]; port == 0 && fgets(line, sizeof line, server.get()) != nullptr;)
        sscanf(line, "ACCEPT %*[0-9.]:%d", &port);
    ASSERT_NE(port, 0);
    const auto make = [port](const wchar_t* target)
    {
        ReaderPointer reader(CreateGenericReaderDLL(ZVFormat(L"https://%s", ZVFormat(target, port))));
        reader->SetTimeout(5000);
        return reader;
    };
    EXPECT_FALSE(make(L"localhost:%d/film")->Open());
    EXPECT_THAT(TakeLog(), testing::HasSubstr("certificate"));

    setenv("SSL_CERT_FILE", folder.PathOf("certificate").c_str(), 1);
    const ReaderPointer known = make(L"localhost:%d/film");
    EXPECT_TRUE(known->Open()) << TakeLog();
    EXPECT_EQ(ReadAll(*known), "sealed");
    EXPECT_FALSE(make(L"127.0.0.1:%d/film")->Open()) << "the certificate is another host's";

    // A redirect to http is not followed, not even by those who came from there.
    plain.SetAnswer("/start",
                    {.Status = 302, .Headers = {ZVStringUTF8(ZVFormat(L"Location: https://localhost:%d/away", port)).Get()}});
    EXPECT_FALSE(ReaderPointer(CreateGenericReaderDLL(plain.GetURL("/start")))->Open());
    EXPECT_THAT(TakeLog(), testing::HasSubstr("from https to http"));
    EXPECT_TRUE(plain.GetRequests("/plain").empty());
    unsetenv("SSL_CERT_FILE");
}
}
