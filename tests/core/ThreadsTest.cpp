// What several threads may do at once. Run under a race detector too.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/XmlDocument.h"
#include "support/PlainObject.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

constexpr int kThreads = 4;

/// Runs work(0) to work(kThreads - 1) at once.
template <class Work>
void InThreads(Work work) {
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      ++ready;
      while (ready < kThreads)
        std::this_thread::yield();
      work(i);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
}

TEST(Threads, LastReferenceDeletesExactlyOnce) {
  const int before = PlainObject::living;
  for (int round = 0; round < 200; ++round) {
    std::vector<CSmartPtr<PlainObject>> owners(kThreads, new PlainObject("shared"));
    InThreads([&](int i) {
      CSmartPtr<PlainObject>& own = owners[static_cast<std::size_t>(i)];
      for (int n = 0; n < 50; ++n) {
        const CSmartPtr<CXmlObjectBase> another = own;
        EXPECT_EQ(another->GetElementName(), "shared");
      }
      own.Reset();
    });
    ASSERT_EQ(PlainObject::living, before);
  }
}

TEST(Threads, ShareTheBytesOfBinaryData) {
  std::string expected(10000, 'x');
  const CBinaryData shared(expected.c_str());
  InThreads([&](int i) {
    const char mark = static_cast<char>('a' + i);
    for (int n = 0; n < 200; ++n) {
      CBinaryData copy(shared);
      CBinaryData second = copy;
      copy[static_cast<unsigned long>(n)] = static_cast<unsigned char>(mark);
      second.Append(mark);
      EXPECT_EQ(copy.GetData()[n], mark);
      EXPECT_EQ(second.GetData()[n], 'x');
      EXPECT_EQ(second.GetLength(), expected.size() + 1);
    }
  });
  EXPECT_EQ(shared, CBinaryData(expected.c_str()));
}

TEST(Threads, WriteOneTreeAtOnce) {
  const std::string xml = "<AA:a xmlns:AA=\"urn:a\" i=\"1\"><AA:b>text</AA:b></AA:a>";
  const CSmartPtr<CElement> tree = ReadUntyped(xml);
  InThreads([&](int) {
    for (int n = 0; n < 100; ++n)
      EXPECT_EQ(Written(*tree), xml);
  });
}

TEST(Threads, WorkOnTreesOfTheirOwnWithTheDefaultContext) {
  InThreads([](int i) {
    const std::string name = "thread" + std::to_string(i);
    const std::string xml =
        "<" + name + " i=\"1\"><b>" + std::string(500, 'b') + "</b></" + name + ">";
    for (int n = 0; n < 50; ++n) {
      const auto& context = CSerializationContext::m_defaultContext;
      const CSmartPtr<CElement> tree = ReadUntyped(xml);
      EXPECT_EQ(Written(*tree->Clone()), xml);
      CElement again("again");
      again.FromXmlStream(tree->ToXmlStream(true, true, XmlEncoding::Utf8, EOLType::Lf, context,
                                            CompressionType::Gzip),
                          context);
      EXPECT_EQ(Written(again), xml);
    }
  });
}

TEST(Threads, GetTheSameLazySettingsOfAContext) {
  for (int round = 0; round < 50; ++round) {
    const CSerializationContext context;
    const void* found[kThreads][3];
    InThreads([&](int i) {
      const CSerializationContext copy(context);
      found[i][0] = &context.GetJsonContext();
      found[i][1] = &context.GetFIContext();
      found[i][2] = context.GetAdditionalRootAttributes().Get();
    });
    for (const auto& pointers : found) {
      for (int kind = 0; kind < 3; ++kind)
        ASSERT_EQ(pointers[kind], found[0][kind]);
    }
  }
}

TEST(Threads, CountTheirOwnDepth) {
  const NestedDocument deepest(1000);
  InThreads([&](int) {
    for (int n = 0; n < 3; ++n)
      CElement("e").FromXml(deepest.xml.c_str());
  });
}

TEST(Threads, DestroyEachOthersTrees) {
  std::vector<CSmartPtr<CElement>> trees(kThreads);
  const auto place = [&](int i) -> auto& {
    return trees[static_cast<std::size_t>(i % kThreads)];
  };
  for (int round = 0; round < 5; ++round) {
    InThreads([&](int i) {
      CXmlDocument document;
      document.LoadXml(NestedDocument(2000).xml.c_str());
      place(i).Reset(new CElement("e"));
      place(i)->CopyXmlElement(document.GetDocumentElement());
    });
    InThreads([&](int i) { place(i + 1).Reset(); });
  }
}

}  // namespace
}  // namespace ZuXmlLib16
