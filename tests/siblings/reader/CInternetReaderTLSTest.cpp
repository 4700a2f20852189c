// Addresses with https against the server of the program openssl, whose certificate nobody has signed.

#include "siblings/reader/ReaderFixture.h"
#include "siblings/tools/ToolsFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/wait.h>

namespace
{
class CInternetReaderTLSTest : public ReaderTest
{
protected:
    void SetUp() override
    {
        if (dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL) == nullptr)
            GTEST_SKIP() << "libcurl.so.4 is not installed";
        const std::string folder = m_folder.PathOf("");
        const std::string make = "cd '" + folder +
                                 "' && openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=localhost "
                                 "-addext subjectAltName=DNS:localhost -keyout key -out certificate 2>openssl.log";
        if (system("command -v openssl >/dev/null") != 0)
            GTEST_SKIP() << "openssl is not installed";
        ASSERT_EQ(system(make.c_str()), 0);
        m_folder.Write("film", "sealed");
        setenv("no_proxy", "localhost", 1);
        StartServer();
    }
    void TearDown() override
    {
        unsetenv("SSL_CERT_FILE");
        unsetenv("no_proxy");
        if (m_output != nullptr)
            fclose(m_output);
        if (m_server > 0)
        {
            kill(m_server, SIGKILL);
            waitpid(m_server, nullptr, 0);
        }
    }

    // Starts the server on a free port, which it prints.
    void StartServer()
    {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        m_server = fork();
        if (m_server == 0)
        {
            dup2(ends[1], STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            close(ends[0]);
            close(ends[1]);
            if (chdir(m_folder.PathOf("").c_str()) == 0)
                execlp("openssl", "openssl", "s_server", "-4", "-accept", "0", "-WWW", "-cert", "certificate", "-key", "key",
                       nullptr);
            _exit(1);
        }
        close(ends[1]);
        m_output = fdopen(ends[0], "r");
        char line[256];
        while (m_port == 0 && fgets(line, sizeof line, m_output) != nullptr)
            if (sscanf(line, "ACCEPT %*[0-9.]:%d", &m_port) != 1)
                m_port = 0;
        ASSERT_NE(m_port, 0);
    }

    ReaderPointer Make(const wchar_t* host)
    {
        ReaderPointer reader(CreateGenericReaderDLL(ZVFormat(L"https://%s:%d/film", host, m_port)));
        reader->SetTimeout(5000);
        return reader;
    }

    ToolsFolder m_folder;
    pid_t m_server = -1;
    FILE* m_output = nullptr;
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

    const ReaderPointer misnamed = Make(L"127.0.0.1");
    setenv("no_proxy", "127.0.0.1", 1);
    EXPECT_FALSE(misnamed->Open()) << "the certificate is another host's";
}
}
