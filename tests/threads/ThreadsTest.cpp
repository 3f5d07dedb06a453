// What several threads may do at the same time. The thread sanitizer looks on in ./kx check
// threads.
#include <KXWAN/KXWAN.h>
#include <KXWAN/foundation/DebugLogPrivate.h>
#include <KXWAN/serial/KxSerial.h>
#include <gtest/gtest.h>
#include <simulator/SimulatedDevice.h>
#include <simulator/line/PseudoTerminal.h>
#include <sys/socket.h>
#include <tests/support/ThreadSanitizer.h>
#include <unistd.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kThreads = 8;

// Runs it in so many threads, which begin at the same moment, with the number of the thread.
void InThreads(const std::function<void(int)>& body) {
  std::barrier together(kThreads);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      together.arrive_and_wait();
      body(thread);
    });
  }
  for (std::thread& each : threads) each.join();
}

// A device whose names are its thread's.
kxsim::Profile Named(const std::string& number) {
  return kxsim::ScriptedProfile({{"AT+GMI", "Maker " + number},
                                 {"AT+GMM", "Model " + number},
                                 {"AT+GMR", "Version " + number},
                                 {"AT+GCAP", "+GCAP: +CGSM"},
                                 {"AT+CSQ", "+CSQ: " + number + ",99"},
                                 {"AT+TEXT", std::string(2000, number[0])}});
}

void ExpectItsOwn(CSWirelessModem& modem, const std::string& number) {
  ModemInfo info = {};
  EXPECT_TRUE(modem.GetModemData(&info));
  EXPECT_EQ(info.szManufacturer, "Maker " + number);
  EXPECT_EQ(info.szModel, "Model " + number);
  EXPECT_EQ(info.szVersion, "Version " + number);
  int result = kxwan::kResultTimeout;
  CString reply;
  EXPECT_TRUE(modem.m_pModem->SendCommandGetResponse("AT+TEXT\r", result, reply));
  EXPECT_EQ(std::string(reply.String()), std::string(2000, number[0]));
  reply.LockBuffer();
}

TEST(Threads, TalkToADeviceEach) {
  constexpr int kRounds = 5;
  std::atomic<int> opened = 0;
  InThreads([&](int thread) {
    const std::string number = std::to_string(thread + 1);
    for (int round = 0; round < kRounds; ++round) {
      kxsim::SimulatedDevice device(Named(number));
      CSWirelessModem modem;
      if (!modem.Open(device.Path().c_str())) continue;
      ++opened;
      ExpectItsOwn(modem, number);
      unsigned long baud = 0;
      EXPECT_EQ(modem.DetectModem(baud), static_cast<CHandsetPlatform>(PLATFORM_GSM));
      EXPECT_FALSE(device.Commands().empty());
      modem.Close();
    }
  });
  EXPECT_EQ(opened, kThreads * kRounds);
}

TEST(Threads, ShareTheTableOfPorts) {
  constexpr int kRounds = 20;
  std::map<uint32_t, int> given;
  std::mutex guard;
  InThreads([&](int) {
    kxsim::PseudoTerminal line;
    ASSERT_TRUE(line.Open(true));
    for (int round = 0; round < kRounds; ++round) {
      KxSerial port;
      ASSERT_EQ(port.Open(line.Path().c_str()), 1);
      const std::lock_guard<std::mutex> lock(guard);
      ++given[port.portID];
    }
  });
  for (const auto& [id, count] : given) EXPECT_TRUE(count == 1 || id == kxwan::kNoPortID) << id;
  for (const kxwan::PortSlot& slot : portList) EXPECT_EQ(slot.id, 0u);
}

TEST(Threads, CloseWhatIsHeld) {
  InThreads([&](int) {
    kxsim::PseudoTerminal line;
    ASSERT_TRUE(line.Open(true));
    KxSerial port;
    ASSERT_EQ(port.Open(line.Path().c_str()), 1);
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    ASSERT_EQ(dup2(ends[0], port.fd), port.fd);
    close(ends[0]);
    ASSERT_EQ(port.Write(reinterpret_cast<const unsigned char*>("AT\r"), 3), 1);
    port.Close();
    char bytes[8];
    EXPECT_EQ(read(ends[1], bytes, sizeof bytes), 3);
    EXPECT_EQ(read(ends[1], bytes, sizeof bytes), 0);
    close(ends[1]);
  });
}

TEST(Threads, ListTheSerialDevices) {
  InThreads([](int) {
    CSModem modem;
    ModemDescriptorArray* devices = nullptr;
    const bool listed = modem.GetInstalledModems(&devices);
    EXPECT_EQ(listed, devices != nullptr);
    delete devices;
  });
}

// On a socket that keeps messages apart each write is one.
TEST(Threads, WriteEachRecordOfTheLogWhole) {
  constexpr int kRecords = 200;
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  FILE* const former = logFileFD;
  logFileFD = fdopen(ends[1], "a");
  std::map<std::string, int> records;
  std::thread reader([&] {
    char record[8192];
    for (ssize_t got = 1; got > 0;) {
      got = read(ends[0], record, sizeof record);
      if (got > 0) ++records[std::string(record, static_cast<size_t>(got)).substr(20)];
    }
  });
  InThreads([](int thread) {
    const std::string text(700, static_cast<char>('a' + thread));
    for (int i = 0; i < kRecords; ++i) KXOutputDebug("%d %s\n", thread, text.c_str());
  });
  fclose(logFileFD);
  logFileFD = former;
  reader.join();
  close(ends[0]);
  ASSERT_EQ(records.size(), static_cast<size_t>(kThreads));
  for (const auto& [record, count] : records) {
    EXPECT_EQ(record.size(), 703u);
    EXPECT_EQ(count, kRecords);
  }
}

TEST(Threads, OpenTheLogOnce) {
  const std::string path = testing::TempDir() + "kxwan-threads-" + std::to_string(getpid());
  FILE* stream = nullptr;
  std::mutex guard;
  std::set<FILE*> streams;
  InThreads([&](int) {
    kxwan::AppendLogRecord(stream, path.c_str(), "a record\n");
    const std::lock_guard<std::mutex> lock(guard);
    streams.insert(stream);
  });
  EXPECT_EQ(streams.size(), 1u);
  std::ifstream file(path);
  int lines = 0;
  for (std::string line; std::getline(file, line); ++lines) EXPECT_EQ(line, "a record");
  EXPECT_EQ(lines, kThreads);
  if (stream != nullptr) fclose(stream);
  std::filesystem::remove(path);
}

TEST(Threads, TakeTheLastErrorOnce) {
  for (int round = 0; round < 50; ++round) {
    SetModemError(102);
    std::atomic<unsigned long> sum = 0;
    InThreads([&](int) { sum += GetLastModemError(); });
    EXPECT_EQ(sum, 102u);
  }
}

TEST(Threads, TakeTheCardsDelayOnce) {
  KXModemSetPCCardOpenDelayFlag();
  std::atomic<int> waited = 0;
  InThreads([&](int) {
    using Clock = std::chrono::steady_clock;
    kxsim::SimulatedDevice device(kxsim::ScriptedProfile({}));
    CSModem modem;
    const Clock::time_point start = Clock::now();
    EXPECT_TRUE(modem.OpenDeviceFast(device.Path().c_str(), 0, 19200));
    if (Clock::now() - start >= std::chrono::seconds(2)) ++waited;
  });
  EXPECT_EQ(waited, 1);
}

TEST(Threads, HaveTheirOwnTexts) {
  InThreads([](int thread) {
    for (int round = 0; round < 200; ++round) {
      const bool even = thread % 2 == 0;
      const char* text = GetModemProtocolTypeAsString(even ? PLATFORM_GSM : PLATFORM_UMTS);
      std::this_thread::yield();
      EXPECT_STREQ(text, even ? "GSM" : "UMTS");
    }
  });
}

// What an empty text shares is only read.
TEST(Threads, ShareTheEmptyText) {
  InThreads([](int) {
    for (int round = 0; round < 200; ++round) {
      CString text(AfxGetEmptyString());
      text.Empty();
      text.LockBuffer();
      text.UnlockBuffer();
      text.GetBuffer(0);
      text.ReleaseBuffer();
      text.TrimLeft();
      text.TrimRight();
      text.MakeUpper();
      text.Remove('x');
      text.SetAt(0, 'x');
      text.DeleteRight(1);
      text = "";
      text.Format("%s", "");
      text.FreeExtra();
      text += "";
      CString other(text);
      other = text.Left(0);
      EXPECT_EQ(other.GetLength(), 0);
    }
  });
  EXPECT_STREQ(AfxGetEmptyString().String(), "");
}

}  // namespace
