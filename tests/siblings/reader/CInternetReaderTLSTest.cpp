// Addresses with https against the server of the program openssl, whose certificate nobody has signed.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace
{
class CInternetReaderTLSTest : public ReaderTest
{
protected:
    void SetUp() override
    {
        if (dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL) == nullptr)
            GTEST_SKIP() << "libcurl.so.4 is not installed";
        if (system("command -v openssl >/dev/null") != 0)
            GTEST_SKIP() << "openssl is not installed";
        m_folder.Write("film", "sealed");
        setenv("no_proxy", "localhost,127.0.0.1", 1);
        // The shell prints the number of its process, which becomes the server's, and that prints its port.
        const std::string start = "cd '" + m_folder.PathOf("") +
                                  "' && openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost "
                                  "-addext subjectAltName=DNS:localhost -keyout key -out certificate 2>openssl.log && echo $$ && "
                                  "exec openssl s_server -4 -accept 0 -WWW -cert certificate -key key 2>&1";
        m_server = popen(start.c_str(), "r");
        char line[256];
        ASSERT_NE(fgets(line, sizeof line, m_server), nullptr);
        m_process = atoi(line);
        while (m_port == 0 && fgets(line, sizeof line, m_server) != nullptr)
            if (sscanf(line, "ACCEPT %*[0-9.]:%d", &m_port) != 1)
                m_port = 0;
        ASSERT_NE(m_port, 0);
    }
    void TearDown() override
    {
        unsetenv("SSL_CERT_FILE");
        unsetenv("no_proxy");
        if (m_process > 0)
            kill(m_process, SIGKILL);
        if (m_server != nullptr)
            pclose(m_server);
    }

    ReaderPointer Make(const wchar_t* host)
    {
        ReaderPointer reader(CreateGenericReaderDLL(ZVFormat(L"https://%s:%d/film", host, m_port)));
        reader->SetTimeout(5000);
        return reader;
    }

    ToolsFolder m_folder;
    FILE* m_server = nullptr;
    pid_t m_process = 0;
    int m_port = 0;
};

TEST_F(CInternetReaderTLSTest, AnUnknownCertificateIsRefused)
{
    const ReaderPointer unknown = Make(L"localhost");
    EXPECT_FALSE(unknown->Open());
    EXPECT_TRUE(unknown->HasFailed());
    EXPECT_THAT(TakeLog(), testing::HasSubstr("certificate"));

    setenv("SSL_CERT_FILE", m_folder.PathOf("certificate").c_str(), 1);
    const ReaderPointer known = Make(L"localhost");
    ASSERT_TRUE(known->Open()) << TakeLog();
    EXPECT_EQ(ReadAll(*known), "sealed");
    EXPECT_FALSE(Make(L"127.0.0.1")->Open()) << "the certificate is another host's";
}
}
