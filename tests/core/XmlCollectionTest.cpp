#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>

#include "ZuXmlLib16/XmlCollection.h"
#include "support/ErrorMatch.h"
#include "support/PlainObject.h"
#include "support/Untyped.h"

namespace ZuXmlLib16 {
namespace {

/// A list of anything, which nobody writes or reads.
class PlainCollection : public CXmlCollection {
 public:
  explicit PlainCollection(std::int32_t minimum = 0, std::int32_t maximum = -1)
      : CXmlCollection("item", "urn:i", minimum, maximum) {}

  void ToXml_Int(CXmlWriter*, bool, const char*, const CSerializationContext&,
                 bool) const override {}
  CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* current, const CSerializationContext&,
                           bool) override {
    return current;
  }
};

/// Notes every event: its kind, the item it names, and the count at that time.
class Recorder : public IEventSink {
 public:
  void OnEvent(CXmlObjectBase* sender, MsgType type, void* data) override {
    static const char* const kinds[] = {"changed", "add", "added", "remove", "removed"};
    log += kinds[static_cast<int>(type)];
    if (data != nullptr) log += ":" + static_cast<CXmlObjectBase*>(data)->GetElementName();
    log += "@" + std::to_string(dynamic_cast<CXmlCollection&>(*sender).GetCount()) + " ";
    if (react) react(*this, type);
  }

  std::string log;
  std::function<void(Recorder&, MsgType)> react;
};

/// The names from head to tail; what the links back do not confirm is an "!".
std::string Names(const CXmlCollection& list) {
  std::string names;
  CXmlCollection::CNode* last = nullptr;
  for (auto* node = list.GetHead(); node != nullptr; node = node->GetNext()) {
    names += node->GetPrevious() == last ? node->GetItem()->GetElementName() : "!";
    last = node;
  }
  return names + (list.GetTail() == last ? "" : "!");
}

/// An object named by one letter.
PlainObject* New(char name) {
  return new PlainObject(std::string(1, name).c_str());
}

TEST(Collection, BehavesAsAStringUnderAnyMixOfChanges) {
  std::mt19937 random(20);
  const auto below = [&](int end) {
    return static_cast<int>(random() % static_cast<unsigned>(end));
  };
  const int before = PlainObject::living;
  {
    PlainCollection list;
    std::string model;
    for (int step = 0; step < 4000; ++step) {
      const int count = static_cast<int>(model.size());
      const char name = static_cast<char>('a' + below(26));
      const int at = below(count + 1);
      CXmlObjectBase* const existing = at < count ? list.GetNodeAtIndex(at)->GetItem() : nullptr;
      const auto insert = [&](int index) { model.insert(model.begin() + index, name); };
      // clang-format off
      switch (below(count > 30 ? 12 : 7)) {
        case 0: list.AppendItem(New(name)); insert(count); break;
        case 1: list.PrependItem(New(name)); insert(0); break;
        case 2: list.AddItemAt(at, New(name)); insert(at); break;
        case 3: list.AddAfterItem(existing, New(name)); insert(existing != nullptr ? at + 1 : 0); break;
        case 4: list.AddBeforeItem(existing, New(name)); insert(at); break;
        default:
          if (at == count) continue;
          list.Remove(at);
          model.erase(model.begin() + at);
      }
      // clang-format on
      ASSERT_EQ(Names(list), model) << "step " << step;
      for (int i = 0; i < 3 && !model.empty(); ++i) {
        const int index = below(list.GetCount());
        ASSERT_EQ(list.GetNodeAtIndex(index)->GetItem()->GetElementName()[0],
                  model[static_cast<std::size_t>(index)]);
      }
    }
    EXPECT_EQ(PlainObject::living, before + list.GetCount());
  }
  EXPECT_EQ(PlainObject::living, before);
}

TEST(Collection, RefusesWithoutEvents) {
  PlainCollection list;
  CSmartPtr<PlainObject> item(New('a'));
  list.AppendItem(item.Get());
  CSmartPtr<PlainObject> equal(New('a'));
  Recorder recorder;
  list.AddEventListener(&recorder);
  const char* const isNull = "The Property [item] is mandatory, it may node be NULL";
  const char* const notFound = "The object was not found in the collection";
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { list.GetNodeAtIndex(1); }, "Index 1 is out of range, use 0 - 1"},
      {[&] { list.AddItemAt(2, equal.Get()); }, "Index out of range"},
      {[&] { list.AppendItem(nullptr); }, isNull},
      {[&] { list.AddBeforeItem(nullptr, nullptr); }, isNull},
      {[&] { list.GetNodeForItem(equal.Get()); }, notFound},
      {[&] { list.RemoveNode(nullptr); }, notFound},
  };
  for (const auto& [run, text] : cases)
    EXPECT_ZU_ERROR(CZuInvalidParamException, run(), text, "");
  equal->SetRepresentative(item.Get());  // items are told apart by what represents them
  EXPECT_EQ(list.GetNodeForItem(equal.Get()), list.GetHead());
  EXPECT_EQ(recorder.log, "");
}

TEST(CollectionEvents, SurroundEveryChange) {
  PlainObject stranger("s");
  CSmartPtr<PlainObject> item(New('i'));
  Recorder recorder;
  {
    PlainCollection list;
    list.AddEventListener(&recorder);
    list.AddEventListener(nullptr);
    const auto logOf = [&](const std::function<void()>& change) {
      recorder.log.clear();
      change();
      return recorder.log;
    };
    EXPECT_EQ(logOf([&] { list.AppendItem(New('x')); }), "add:x@0 added:x@1 changed@1 ");
    EXPECT_EQ(logOf([&] { list.Remove(0); }), "remove@1 removed@0 changed@0 ");
    list.AppendItem(New('y'));
    list.AppendItem(New('z'));
    EXPECT_EQ(logOf([&] { list.Clear(); }),
              "remove@2 removed@1 changed@1 remove@1 removed@0 changed@0 ");
    // Told of before it is known that the neighbour is not there.
    EXPECT_EQ(logOf([&] { EXPECT_ANY_THROW(list.AddAfterItem(&stranger, item.Get())); }),
              "add:i@0 ");
    list.AppendItem(item.Get());
    recorder.log.clear();
  }
  EXPECT_EQ(recorder.log, "");  // a collection that goes is silent
  EXPECT_EQ(item->AddRef(), 2);
  item->Release();
}

TEST(CollectionEvents, ReachListenersAsOftenAsTheyWereAdded) {
  PlainCollection list;
  Recorder twice;
  Recorder leaver;
  leaver.react = [&](Recorder& self, auto) { list.RemoveEventListener(&self); };
  for (Recorder* recorder : {&twice, &twice, &leaver})
    list.AddEventListener(recorder);
  list.AppendItem(New('x'));
  EXPECT_EQ(twice.log, "add:x@0 add:x@0 added:x@1 added:x@1 changed@1 changed@1 ");
  EXPECT_EQ(leaver.log, "add:x@0 ");
  list.RemoveEventListener(&twice);
  twice.log.clear();
  list.Remove(0);
  EXPECT_EQ(twice.log, "");
}

TEST(CollectionEvents, ListenersVetoBeforeTheChangeOnly) {
  const int before = PlainObject::living;
  PlainCollection list;
  Recorder recorder;
  list.AddEventListener(&recorder);
  using MsgType = IEventSink::MsgType;
  MsgType vetoed = MsgType::Added;
  recorder.react = [&vetoed](Recorder&, MsgType type) {
    if (type == vetoed) throw CZuInvalidStateException("vetoed");
  };
  EXPECT_ZU_ERROR(CZuInvalidStateException, list.AppendItem(New('x')), "vetoed", "");
  EXPECT_EQ(PlainObject::living, before);  // the refused item was not leaked
  vetoed = MsgType::Changed;
  EXPECT_ZU_ERROR(CZuInvalidStateException, list.AppendItem(New('x')), "vetoed", "");
  EXPECT_EQ(Names(list), "x");
  vetoed = MsgType::Removed;
  EXPECT_ZU_ERROR(CZuInvalidStateException, list.Clear(), "vetoed", "");
  EXPECT_EQ(Names(list), "x");
}

TEST(Collection, CountIsCheckedAgainstBothBounds) {
  const struct {
    std::int32_t minimum, maximum;
    int count;
    std::string broken;  // the bound and its value, "" when the count is valid
  } cases[] = {
      {0, -1, 6, ""},         {0, 0, 1, "Maximum 0"}, {2, 2, 2, ""},
      {2, 2, 1, "Minimum 2"}, {2, 2, 3, "Maximum 2"}, {3, 2, 3, "Maximum 2"},
  };
  const CSerializationContext& strict = CSerializationContext::m_defaultContext;
  CSerializationContext ignoring;
  ignoring.SetIgnoreInvalidCollectionCounts(true);
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.count << " in " << c.minimum << " to " << c.maximum);
    PlainCollection list(c.minimum, c.maximum);
    for (int i = 0; i < c.count; ++i)
      list.AppendItem(New('i'));
    EXPECT_EQ(list.IsValidCount(strict), c.broken.empty());
    EXPECT_TRUE(list.IsValidCount(ignoring));
    list.ValidateCount(ignoring);
    if (c.broken.empty()) {
      list.ValidateCount(strict);
    } else {
      EXPECT_ZU_ERROR(CZuValidationException, list.ValidateCount(strict),
                      "The " + c.broken.substr(0, 7) +
                          " number of [item] elements allowed in this collection is " +
                          c.broken.substr(8),
                      "");
    }
  }
}

TEST(Collection, IsNoDocument) {
  EXPECT_ZU_ERROR(CZuException, Written(CElementCol("x", "##any", "urn:t", 0, -1)),
                  "CXmlCollectionBase::GetTargetNamespace Should not be used from within a "
                  "Collection (program logic error)",
                  "");
}

TEST(CollectionEvents, ListenersMayEmptyTheCollection) {
  for (const auto trigger : {IEventSink::MsgType::Added, IEventSink::MsgType::AddComplete,
                             IEventSink::MsgType::Removed}) {
    PlainCollection list;
    Recorder recorders[2];
    list.AppendItem(New('a'));
    for (Recorder& recorder : recorders) {
      recorder.react = [&list, trigger, isBusy = false](Recorder&, auto type) mutable {
        if (type != trigger || std::exchange(isBusy, true)) return;
        list.Clear();
        isBusy = false;
      };
      list.AddEventListener(&recorder);
    }
    list.AppendItem(New('b'));
    if (list.GetCount() > 0) list.Remove(list.GetCount() - 1);
    EXPECT_LE(list.GetCount(), 1);
  }
}

TEST(TypedCollections, RefuseOtherObjectsAndForeignNodes) {
  CElementCol elements("x", "##any", "", 0, -1);
  CAttributeCol attributes("", "##any", "");
  EXPECT_THROW(elements.AppendItem(new CAttribute("a", "", "")), CZuInvalidParamException);
  EXPECT_THROW(attributes.PrependItem(new CElement("a")), CZuInvalidParamException);
  attributes.Add("a");
  EXPECT_THROW(elements.RemoveNode(attributes.GetHead()), CZuInvalidParamException);
  EXPECT_EQ(attributes.GetCount(), 1);
}

}  // namespace
}  // namespace ZuXmlLib16
