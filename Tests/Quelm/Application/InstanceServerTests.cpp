#include "Quelm/Application/InstanceClient.h"
#include "Quelm/Application/InstanceServer.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

// Programs that find each other: the one that runs, and those that are started meanwhile.

namespace quelm {
namespace {

using namespace std::chrono_literals;

class InstanceServerTests : public testing::Test {
protected:
    static constexpr std::chrono::milliseconds longTime = 60s;

    InstanceAddress address(const std::string& screen = "pantalla") const {
        return *InstanceAddress::in(folder.path().toStdString(), screen);
    }
    QString socketPath() const { return folder.filePath(QStringLiteral("quelm/pantalla/socket")); }
    /// The first program, which notes what it is asked for.
    std::unique_ptr<InstanceServer> serve() {
        InstanceClaim claim = claimInstance(address(), {}, longTime);
        EXPECT_TRUE(claim.socket);
        auto server = std::make_unique<InstanceServer>(*std::move(claim.socket));
        QObject::connect(server.get(), &InstanceServer::requested, server.get(),
                         [this](const InstanceRequest& request) { requests.push_back(request); });
        return server;
    }
    /// Another program, while this one goes on with its event loop.
    InstanceClaim claimElsewhere(const InstanceRequest& request, std::chrono::milliseconds patience = longTime) {
        InstanceClaim claim;
        std::atomic<bool> isDone = false;
        std::jthread other([&] {
            claim = claimInstance(address(), request, patience);
            isDone = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone.load(); }, 60'000));
        return claim;
    }
    /// What the server answers to any bytes; '\0' when it closes without a word.
    char answerTo(std::string_view bytes, bool isEnded) {
        const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
        const InstanceAddress where = address();
        EXPECT_EQ(::connect(socket.number(), reinterpret_cast<const sockaddr*>(&where.socketAddress()),
                            sizeof where.socketAddress()),
                  0);
        EXPECT_EQ(::send(socket.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
        if (isEnded)
            ::shutdown(socket.number(), SHUT_WR);
        char answer = 0;
        EXPECT_TRUE(QTest::qWaitFor([&] { return ::recv(socket.number(), &answer, 1, 0) >= 0; }, 60'000));
        return answer;
    }

    QTemporaryDir folder;
    std::vector<InstanceRequest> requests;
};

TEST_F(InstanceServerTests, TheFirstProgramHasASocketThatNobodyElseMayUse) {
    const auto server = serve();
    struct stat status{};
    ASSERT_EQ(::lstat(qUtf8Printable(socketPath()), &status), 0);
    EXPECT_TRUE(S_ISSOCK(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    ASSERT_EQ(::lstat(qUtf8Printable(QFileInfo(socketPath()).path()), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(InstanceServerTests, ASecondProgramHandsItsFilesOver) {
    const auto server = serve();
    const InstanceRequest request{{"/a.json", "/b.json"}};
    const InstanceClaim claim = claimElsewhere(request);
    EXPECT_TRUE(claim.isHandedOver);
    EXPECT_FALSE(claim.socket);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0], request);
    EXPECT_TRUE(claimElsewhere({}).isHandedOver);
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_TRUE(requests[1].paths.empty());
}

TEST_F(InstanceServerTests, TheSocketGoesWithItsProgramAndTheNextOneTakesItsPlace) {
    serve().reset();
    EXPECT_FALSE(QFileInfo::exists(socketPath()));
    const auto next = serve();
    EXPECT_TRUE(claimElsewhere({{"/a.json"}}).isHandedOver);
}

TEST_F(InstanceServerTests, TheSocketOfAProgramThatWasKilledIsTakenOver) {
    // Its file stays, and its lock goes.
    const FileDescriptor dead(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const InstanceAddress where = address();
    ASSERT_EQ(
        ::bind(dead.number(), reinterpret_cast<const sockaddr*>(&where.socketAddress()), sizeof where.socketAddress()),
        0);
    const auto server = serve();
    EXPECT_TRUE(claimElsewhere({{"/a.json"}}).isHandedOver);
}

TEST_F(InstanceServerTests, AProgramThatDoesNotAnswerIsLeftAlone) {
    const InstanceClaim deaf = claimInstance(address(), {}, longTime);
    ASSERT_TRUE(deaf.socket);
    const InstanceClaim claim = claimInstance(address(), {{"/a.json"}}, 50ms);
    EXPECT_FALSE(claim.isHandedOver);
    EXPECT_FALSE(claim.socket);
    EXPECT_TRUE(QFileInfo::exists(socketPath()));
}

TEST_F(InstanceServerTests, OfManyProgramsStartedAtOnceOneIsTheFirst) {
    std::vector<InstanceClaim> claims(8);
    std::atomic<int> doneCount = 0;
    {
        std::vector<std::jthread> programs;
        for (InstanceClaim& claim : claims)
            programs.emplace_back([&] {
                claim = claimInstance(address(), {{"/a.json"}}, 1s);
                ++doneCount;
            });
    }
    EXPECT_EQ(doneCount, 8);
    EXPECT_EQ(std::ranges::count_if(claims, [](const InstanceClaim& claim) { return claim.socket.has_value(); }), 1);
}

TEST_F(InstanceServerTests, ProgramsOnOtherScreensAreStrangers) {
    const auto server = serve();
    const InstanceClaim other = claimInstance(address("otra"), {{"/a.json"}}, longTime);
    EXPECT_FALSE(other.isHandedOver);
    EXPECT_TRUE(other.socket);
}

TEST_F(InstanceServerTests, WhatCannotBeHandedOverIsForTheProgramItself) {
    const auto server = serve();
    const InstanceClaim claim = claimInstance(address(), {{"sin carpeta"}}, longTime);
    EXPECT_FALSE(claim.isHandedOver);
    EXPECT_FALSE(claim.socket);
}

TEST_F(InstanceServerTests, BytesThatAreNoRequestAreRefusedAndNothingFollows) {
    const auto server = serve();
    const std::string request = *InstanceRequest{{"/a.json"}}.encoded();
    EXPECT_EQ(answerTo("GET / HTTP/1.1\r\n\r\n", false), instanceRefused);
    EXPECT_EQ(answerTo(request + "x", false), instanceRefused);
    EXPECT_EQ(answerTo(request.substr(0, 5), true), instanceRefused);
    EXPECT_EQ(answerTo(request.substr(0, request.size() - 1), true), instanceRefused);
    EXPECT_EQ(answerTo({}, true), instanceRefused);
    std::string noPath = request;
    noPath[InstanceRequest::headerLength] = 'a';
    EXPECT_EQ(answerTo(noPath, false), instanceRefused);
    EXPECT_TRUE(requests.empty());
    EXPECT_EQ(answerTo(request, false), instanceAccepted);
    EXPECT_EQ(requests.size(), 1u);
}

TEST_F(InstanceServerTests, OneThatSaysNothingIsTurnedAwayAndKeepsNobodyFromBeingHeard) {
    const auto server = serve();
    const FileDescriptor silent(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const InstanceAddress where = address();
    ASSERT_EQ(::connect(silent.number(), reinterpret_cast<const sockaddr*>(&where.socketAddress()),
                        sizeof where.socketAddress()),
              0);
    EXPECT_TRUE(claimElsewhere({{"/a.json"}}).isHandedOver);
    char answer = 0;
    ASSERT_TRUE(QTest::qWaitFor([&] { return ::recv(silent.number(), &answer, 1, 0) == 1; }, 60'000));
    EXPECT_EQ(answer, instanceRefused);
}

TEST_F(InstanceServerTests, AFolderThatOthersMayWriteIsNotUsed) {
    ASSERT_TRUE(InstanceAddress::in(folder.path().toStdString(), "a"));
    const std::string own = folder.filePath(QStringLiteral("quelm")).toStdString();
    ASSERT_EQ(::chmod(own.c_str(), 0777), 0);
    EXPECT_FALSE(InstanceAddress::in(folder.path().toStdString(), "a"));
}

TEST_F(InstanceServerTests, ALinkIsNotFollowedAndALongPathIsNoAddress) {
    ASSERT_TRUE(QFile::link(folder.path(), folder.filePath(QStringLiteral("quelm"))));
    EXPECT_FALSE(InstanceAddress::in(folder.path().toStdString(), "a"));
    EXPECT_FALSE(InstanceAddress::in("/" + std::string(200, 'a'), "a"));
}

} // namespace
} // namespace quelm
