// A red-black tree of values, used as a sorted set and as a priority queue: insert,
// and above a bound removeBot(). (Guibas and Sedgewick's balanced trees, with the
// restoring passes of Cormen, Leiserson and Rivest, "Introduction to Algorithms",
// chapter 14.)
//
// Config::cmp(a, b) is below, at or above 0; the default uses operator<. Equal
// values are not kept twice.
#pragma once

#include <ostream>
#include <utility>

namespace vandrelle {

template <typename T>
struct FdRBTreeConfig {
  static int cmp(const T& a, const T& b) { return a < b ? -1 : b < a ? 1 : 0; }
};

template <typename T>
struct FdRBTreeNode {
  static constexpr int kBlack = 0;
  static constexpr int kRed = 1;

  int color;
  FdRBTreeNode* parent;
  FdRBTreeNode* left;
  FdRBTreeNode* right;
  T data;
};

template <typename T, typename Config>
class FdRBTreeIterator;

template <typename T, typename Config = FdRBTreeConfig<T>>
class FdRBTree {
 public:
  using Node = FdRBTreeNode<T>;

  FdRBTree() = default;
  ~FdRBTree() { removeAll(); }
  FdRBTree(const FdRBTree&) = delete;
  FdRBTree& operator=(const FdRBTree&) = delete;

  // A value equal to one that is there takes its place; the size stays.
  void insert(const T& data);

  // The equal value in place, or null. What the order depends on must not be changed
  // through it.
  T* find(const T& data) const {
    Node* node = nodeOf(data);
    return node != nullptr ? &node->data : nullptr;
  }
  // Overwrites `data` with the equal value of the tree; false if there is none.
  bool load(T& data) const {
    const Node* node = nodeOf(data);
    if (node != nullptr) data = node->data;
    return node != nullptr;
  }

  bool remove(const T& data) { return removeNode(nodeOf(data)); }
  void removeAll();

  // The smallest and the largest value in place, null in an empty tree.
  T* top() const { return root_ != nullptr ? &leftmost(root_)->data : nullptr; }
  T* bot() const { return root_ != nullptr ? &rightmost(root_)->data : nullptr; }
  // False in an empty tree.
  bool removeTop() { return removeNode(root_ != nullptr ? leftmost(root_) : nullptr); }
  bool removeBot() { return removeNode(root_ != nullptr ? rightmost(root_) : nullptr); }

  int size() const { return size_; }

  // A walk from the smallest value up. The tree must stay unchanged.
  FdRBTreeIterator<T, Config> iterator() const { return FdRBTreeIterator<T, Config>(this); }

  // Do the rules hold: order, links, no red child of a red node, and equal numbers of
  // black nodes on all ways down? For tests.
  bool isBalanced() const { return blackHeight(root_, nullptr) >= 0; }

 private:
  friend class FdRBTreeIterator<T, Config>;

  static Node* leftmost(Node* node) {
    while (node->left != nullptr) node = node->left;
    return node;
  }
  static Node* rightmost(Node* node) {
    while (node->right != nullptr) node = node->right;
    return node;
  }
  static bool isRed(const Node* node) { return node != nullptr && node->color == Node::kRed; }

  Node* nodeOf(const T& data) const {
    Node* node = root_;
    while (node != nullptr) {
      const int order = Config::cmp(data, node->data);
      if (order == 0) break;
      node = order < 0 ? node->left : node->right;
    }
    return node;
  }

  // Hangs `to` (may be null) where `from` hangs.
  void relink(Node* from, Node* to) {
    if (from->parent == nullptr) {
      root_ = to;
    } else if (from == from->parent->left) {
      from->parent->left = to;
    } else {
      from->parent->right = to;
    }
    if (to != nullptr) to->parent = from->parent;
  }

  void rotateLeft(Node* node);
  void rotateRight(Node* node);
  void replace(Node* old, Node* node);
  void insertFixup(Node* node);
  bool removeNode(Node* node);
  void fixup(Node* node, Node* parent);
  int blackHeight(const Node* node, const Node* parent) const;

  Node* root_ = nullptr;
  int size_ = 0;
};

template <typename T, typename Config = FdRBTreeConfig<T>>
class FdRBTreeIterator {
 public:
  explicit FdRBTreeIterator(const FdRBTree<T, Config>* tree) : tree_(tree) { reset(); }

  void reset() {
    node_ = tree_->root_ != nullptr ? FdRBTree<T, Config>::leftmost(tree_->root_) : nullptr;
  }
  bool more() const { return node_ != nullptr; }
  void next() {
    if (node_->right != nullptr) {
      node_ = FdRBTree<T, Config>::leftmost(node_->right);
      return;
    }
    const FdRBTreeNode<T>* child;
    do {
      child = node_;
      node_ = node_->parent;
    } while (node_ != nullptr && child == node_->right);
  }
  T& data() const { return node_->data; }

 private:
  FdRBTreeNode<T>* node_ = nullptr;
  const FdRBTree<T, Config>* tree_;
};

// A key with its data, ordered by the key alone.
template <typename K, typename D>
struct FdRBPair {
  K key;
  D data;
  bool operator<(const FdRBPair& other) const { return key < other.key; }
};

// A sorted map: a tree of pairs whose top() is the pair with the smallest key.
template <typename K, typename D>
class FdRBPairTreeMin : public FdRBTree<FdRBPair<K, D>> {
 public:
  using Base = FdRBTree<FdRBPair<K, D>>;
  using Base::find;
  using Base::insert;
  using Base::remove;

  // Replaces the data of a key that is there.
  void insert(const K& key, const D& data) { Base::insert({key, data}); }
  bool find(const K& key, D& data) const {
    const D* found = findData(key);
    if (found != nullptr) data = *found;
    return found != nullptr;
  }
  // The data in place, or null.
  D* findData(const K& key) const {
    FdRBPair<K, D>* pair = Base::find({key, D{}});
    return pair != nullptr ? &pair->data : nullptr;
  }
};

template <typename T, typename Config>
void FdRBTree<T, Config>::rotateLeft(Node* node) {
  Node* child = node->right;
  node->right = child->left;
  if (child->left != nullptr) child->left->parent = node;
  relink(node, child);
  child->left = node;
  node->parent = child;
}

template <typename T, typename Config>
void FdRBTree<T, Config>::rotateRight(Node* node) {
  Node* child = node->left;
  node->left = child->right;
  if (child->right != nullptr) child->right->parent = node;
  relink(node, child);
  child->right = node;
  node->parent = child;
}

template <typename T, typename Config>
void FdRBTree<T, Config>::replace(Node* old, Node* node) {
  node->color = old->color;
  node->left = old->left;
  node->right = old->right;
  relink(old, node);
  node->parent = old->parent;
  if (node->left != nullptr) node->left->parent = node;
  if (node->right != nullptr) node->right->parent = node;
  delete old;
}

template <typename T, typename Config>
void FdRBTree<T, Config>::insert(const T& data) {
  Node* parent = nullptr;
  Node** link = &root_;
  Node* made = new Node{Node::kRed, nullptr, nullptr, nullptr, data};
  while (*link != nullptr) {
    parent = *link;
    const int order = Config::cmp(data, parent->data);
    if (order == 0) {
      replace(parent, made);
      return;
    }
    link = order < 0 ? &parent->left : &parent->right;
  }
  made->parent = parent;
  *link = made;
  ++size_;
  insertFixup(made);
}

template <typename T, typename Config>
void FdRBTree<T, Config>::insertFixup(Node* node) {
  while (isRed(node->parent)) {
    Node* parent = node->parent;
    Node* grandparent = parent->parent;
    const bool onLeft = parent == grandparent->left;
    Node* uncle = onLeft ? grandparent->right : grandparent->left;
    if (isRed(uncle)) {
      parent->color = uncle->color = Node::kBlack;
      grandparent->color = Node::kRed;
      node = grandparent;
      continue;
    }
    if (node == (onLeft ? parent->right : parent->left)) {
      if (onLeft) {
        rotateLeft(parent);
      } else {
        rotateRight(parent);
      }
      std::swap(node, parent);
    }
    parent->color = Node::kBlack;
    grandparent->color = Node::kRed;
    if (onLeft) {
      rotateRight(grandparent);
    } else {
      rotateLeft(grandparent);
    }
  }
  root_->color = Node::kBlack;
}

template <typename T, typename Config>
bool FdRBTree<T, Config>::removeNode(Node* node) {
  if (node == nullptr) return false;
  if (node->left != nullptr && node->right != nullptr) {
    Node* successor = leftmost(node->right);
    node->data = std::move(successor->data);
    node = successor;
  }
  Node* child = node->left != nullptr ? node->left : node->right;
  Node* parent = node->parent;
  relink(node, child);
  if (node->color == Node::kBlack) fixup(child, parent);
  delete node;
  --size_;
  return true;
}

// `node` (may be null, then `parent` says where it hangs) lacks a black node on its
// ways down.
template <typename T, typename Config>
void FdRBTree<T, Config>::fixup(Node* node, Node* parent) {
  while (node != root_ && !isRed(node)) {
    const bool onLeft = node == parent->left;
    Node* sibling = onLeft ? parent->right : parent->left;
    if (isRed(sibling)) {
      sibling->color = Node::kBlack;
      parent->color = Node::kRed;
      if (onLeft) {
        rotateLeft(parent);
      } else {
        rotateRight(parent);
      }
      sibling = onLeft ? parent->right : parent->left;
    }
    if (!isRed(sibling->left) && !isRed(sibling->right)) {
      sibling->color = Node::kRed;
      node = parent;
      parent = node->parent;
      continue;
    }
    if (!isRed(onLeft ? sibling->right : sibling->left)) {
      (onLeft ? sibling->left : sibling->right)->color = Node::kBlack;
      sibling->color = Node::kRed;
      if (onLeft) {
        rotateRight(sibling);
      } else {
        rotateLeft(sibling);
      }
      sibling = onLeft ? parent->right : parent->left;
    }
    sibling->color = parent->color;
    parent->color = Node::kBlack;
    (onLeft ? sibling->right : sibling->left)->color = Node::kBlack;
    if (onLeft) {
      rotateLeft(parent);
    } else {
      rotateRight(parent);
    }
    node = root_;
  }
  if (node != nullptr) node->color = Node::kBlack;
}

template <typename T, typename Config>
void FdRBTree<T, Config>::removeAll() {
  Node* node = root_;
  while (node != nullptr) {
    if (node->left != nullptr) {
      node = node->left;
    } else if (node->right != nullptr) {
      node = node->right;
    } else {
      Node* parent = node->parent;
      if (parent != nullptr) (node == parent->left ? parent->left : parent->right) = nullptr;
      delete node;
      node = parent;
    }
  }
  root_ = nullptr;
  size_ = 0;
}

template <typename T, typename Config>
int FdRBTree<T, Config>::blackHeight(const Node* node, const Node* parent) const {
  if (node == nullptr) return 0;
  if (node->parent != parent) return -1;
  if (isRed(node) && (parent == nullptr || isRed(parent))) return -1;
  if (node->left != nullptr && Config::cmp(node->left->data, node->data) >= 0) return -1;
  if (node->right != nullptr && Config::cmp(node->right->data, node->data) <= 0) return -1;
  const int left = blackHeight(node->left, node);
  const int right = blackHeight(node->right, node);
  if (left < 0 || left != right) return -1;
  return left + (isRed(node) ? 0 : 1);
}

}  // namespace vandrelle
