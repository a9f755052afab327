// A list of one level of the tree (patients, studies, series), whose nodes take their texts from
// data sets and are found by their key without walking the list.
#pragma once

#include <memory>
#include <new>
#include <span>
#include <unordered_map>
#include <utility>

#include "fileset/model/element_text.h"
#include "fileset/model/recorded_item.h"
#include "foundation/base_list.h"

namespace quillon {

// One text of a node. The rows of a node stand in the order in which they are read; a directory
// record has the same ones as its keys.
template <typename Node>
struct AttributeRow {
  DcTag tag;
  Text Node::*field;
  UINT message;                     // when the attribute cannot be read
  const OLECHAR* ofNone = nullptr;  // what stands for an absent or empty one
};

// What the texts of a node are read from.
struct NodeSource {
  const DcElemList* dataSet;
  // What the bytes mean; null: what the platform's 8-bit code page says.
  const CharacterSet* characterSet;

  NodeSource(const DcElemList* source, const CharacterSet* of = nullptr)
      : dataSet(source), characterSet(of) {}
};

struct NodeListMessages {
  UINT noKey;  // to be found by
  UINT noDataSet;
  UINT noStorage;
};

// Node has Key() and Attributes(), its rows. The index' keys lie in the nodes, which the list owns
// and never moves.
template <typename Node>
class NodeList : public COwningList<Node> {
 public:
  void RemoveAll() override {
    index_.clear();
    COwningList<Node>::RemoveAll();
  }
  void RemoveLast() override {
    if (this->GetCount() == 0) return;
    const Node* const last = this->At(this->GetCount() - 1);
    const auto found = index_.find(last->Key());
    if (found != index_.end() && found->second == last) index_.erase(found);
    COwningList<Node>::RemoveLast();
  }

  // The first node with exactly this key; null when there is none, with a sentence when the key is
  // empty.
  [[nodiscard]] Node* Find(TextView key) {
    if (key.empty()) {
      this->SetErrorMessage(messages_.noKey);
      return nullptr;
    }
    const auto found = index_.find(key);
    return found == index_.end() ? nullptr : found->second;
  }
  // Appends a node with the attributes of the data set, whether or not its key is in the list.
  // Null, with a sentence, leaves the list as it was.
  [[nodiscard]] Node* Add(const NodeSource& source) {
    return Add(source, [](Node&) { return true; });
  }

 protected:
  NodeList(TextView className, const NodeListMessages& messages) : messages_(messages) {
    this->SetClassName(className);
  }

  // begin(node) comes before the attributes and may refuse, with a sentence.
  template <typename Begin>
  [[nodiscard]] Node* Add(const NodeSource& source, Begin begin) {
    if (source.dataSet == nullptr) {
      this->Fail(messages_.noDataSet);
      return nullptr;
    }
    try {
      auto node = std::make_unique<Node>();
      Node* const added = node.get();
      if (!begin(*added) || !ReadAttributes(source, *added)) return nullptr;
      this->Append(std::move(node), [this](Node& entered) {
        // Of several nodes with one key the first one is found.
        index_.emplace(entered.Key(), &entered);
      });
      return added;
    } catch (const std::bad_alloc&) {
      this->Fail(messages_.noStorage);
      return nullptr;
    }
  }

 private:
  [[nodiscard]] bool ReadAttributes(const NodeSource& source, Node& node) {
    for (const AttributeRow<Node>& row : Node::Attributes()) {
      Text& field = node.*row.field;
      if (!TakeElementText(*source.dataSet, row.tag, field, source.characterSet))
        return this->Fail(row.message);
      if (field.empty() && row.ofNone != nullptr) field = row.ofNone;
    }
    return true;
  }

  NodeListMessages messages_;
  std::unordered_map<TextView, Node*> index_;
};

}  // namespace quillon
