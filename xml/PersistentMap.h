#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace ZuXmlLib16::detail {

/// An ordered map from texts whose copies share everything until one of them is changed: a copy
/// costs nothing, a change or a look-up time in the logarithm of the size. A balanced (AVL) tree of
/// immutable nodes.
template <class Value>
class PersistentMap {
 public:
  /// @return the value of a key or null; valid as long as this map, and unchanged in all its
  /// copies.
  const std::pair<const std::string, Value>* Find(std::string_view key) const {
    const Node* node = m_root.get();
    while (node != nullptr && node->entry.first != key) {
      node = (key < node->entry.first ? node->left : node->right).get();
    }
    return node != nullptr ? &node->entry : nullptr;
  }

  /// The map with a value inserted or replaced.
  PersistentMap With(std::string_view key, Value value) const {
    return PersistentMap(Insert(m_root, key, std::move(value)));
  }

  /// Calls visit with every entry, in the order of the keys.
  template <class Visit>
  void ForEach(Visit visit) const {
    Walk(m_root.get(), visit);
  }

  PersistentMap() = default;

 private:
  struct Node;
  using NodePtr = std::shared_ptr<const Node>;
  struct Node {
    Node(NodePtr leftNode, std::pair<const std::string, Value> nodeEntry, NodePtr rightNode)
        : entry(std::move(nodeEntry)),
          left(std::move(leftNode)),
          right(std::move(rightNode)),
          height(1 + std::max(HeightOf(left), HeightOf(right))) {}

    std::pair<const std::string, Value> entry;
    NodePtr left;
    NodePtr right;
    int height;
  };

  explicit PersistentMap(NodePtr root) : m_root(std::move(root)) {}

  static int HeightOf(const NodePtr& node) { return node ? node->height : 0; }

  static NodePtr Make(NodePtr left, const std::pair<const std::string, Value>& entry,
                      NodePtr right) {
    return std::make_shared<const Node>(std::move(left), entry, std::move(right));
  }

  /// A node over two trees whose heights differ by at most two.
  static NodePtr Balanced(const NodePtr& left, const std::pair<const std::string, Value>& entry,
                          const NodePtr& right) {
    if (HeightOf(left) > HeightOf(right) + 1) {
      if (HeightOf(left->left) >= HeightOf(left->right)) {
        return Make(left->left, left->entry, Make(left->right, entry, right));
      }
      const NodePtr& middle = left->right;
      return Make(Make(left->left, left->entry, middle->left), middle->entry,
                  Make(middle->right, entry, right));
    }
    if (HeightOf(right) > HeightOf(left) + 1) {
      if (HeightOf(right->right) >= HeightOf(right->left)) {
        return Make(Make(left, entry, right->left), right->entry, right->right);
      }
      const NodePtr& middle = right->left;
      return Make(Make(left, entry, middle->left), middle->entry,
                  Make(middle->right, right->entry, right->right));
    }
    return Make(left, entry, right);
  }

  // The recursions are as deep as the tree is high.
  // NOLINTBEGIN(misc-no-recursion)
  static NodePtr Insert(const NodePtr& node, std::string_view key, Value value) {
    if (!node) return Make(nullptr, {std::string(key), std::move(value)}, nullptr);
    if (key < node->entry.first) {
      return Balanced(Insert(node->left, key, std::move(value)), node->entry, node->right);
    }
    if (node->entry.first < key) {
      return Balanced(node->left, node->entry, Insert(node->right, key, std::move(value)));
    }
    return Make(node->left, {node->entry.first, std::move(value)}, node->right);
  }

  template <class Visit>
  static void Walk(const Node* node, Visit& visit) {
    if (node == nullptr) return;
    Walk(node->left.get(), visit);
    visit(node->entry.first, node->entry.second);
    Walk(node->right.get(), visit);
  }
  // NOLINTEND(misc-no-recursion)

  NodePtr m_root;
};

}  // namespace ZuXmlLib16::detail
