// The record list under every data class: a doubly linked list of plain
// fixed-size records with one built-in cursor.
//
// A data class *is* its list of rows. Row code walks it with the one cursor:
//
//   if (list.Home() == 0) do { use(list.pael); } while (list++);
//
// Most code relies on where the cursor stands after each operation, at the
// ends of the list above all, so every operation below says exactly what it
// does to `aktel`, `plats`, `mark`, `pael` and `pmael`.
//
// Records are plain data. Nodes are raw memory holding two links and the
// record inline; no constructor or destructor of T ever runs, records move
// only by whole-record copy, and sorting relinks nodes without moving records,
// so a pointer into a record stays valid until its row is deleted.
//
// Nodes are cut from slabs that double in size, so reading a file of n rows
// makes some log n allocations rather than n. A deleted node waits on a free
// list for the next row; the slabs go back to the heap with the list.
//
// Out of memory and internal sort errors are thrown as text (a pointer to a
// constant wide text, or a std::wstring for the two formatted ones) and are
// meant to reach the calling program. A list cannot be copied: the copy
// constructor and assignment throw.
#ifndef KORVO_FOUNDATION_LIST0_H_
#define KORVO_FOUNDATION_LIST0_H_

#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <type_traits>

template <class T>
class list0 {
 public:
  // One node: previous-link, next-link, then the record.
  struct Node {
    Node* prev;
    Node* next;
    T rec;
  };

  list0() : nodord(NodeUnits()) {
    static_assert(std::is_trivially_copyable_v<T>, "list0 holds plain records only");
  }
  // Lists are passed by pointer or reference; a copy is a programming error
  // that the calling program hears about.
  list0(const list0&) { throw L"Internt fel (Initiering list0)"; }
  list0& operator=(const list0&) { throw L"Internt fel (Tilldelning list0)"; }

 protected:
  // Compares the record at `pael` with the record at `pmael`: 1 or more means
  // the `pmael` record goes before the `pael` record, 0 or less that the two
  // stand in order. `key` chooses the order; the base form keeps any order.
  virtual int Sortval(int key) {
    (void)key;
    return 0;
  }

 public:
  // Gives every slab back, and with them every node.
  virtual ~list0() {
    while (slabs_ != nullptr) {
      Slab* next = slabs_->next;
      ::operator delete(slabs_);
      slabs_ = next;
    }
  }

  // Makes room for `n` more rows in one allocation, for a caller that knows
  // how many rows are coming. Throws "Minnesbrist (Class list0)" when out of
  // memory; the list is unchanged either way.
  void Reserve(int n) {
    if (n <= 0 || fresh_end_ - fresh_ >= n) return;
    if (!AddSlab(static_cast<size_t>(n))) throw L"Minnesbrist (Class list0)";
  }

  // Appends a node with undefined content at the end and makes it current,
  // unless there is no current node (after a failed Set_aktel): then the
  // cursor stays nowhere and `pael` null. Returns how many steps the cursor
  // took to reach the new node: 1 when it stood on the last one.
  // Throws "Minnesbrist (Class list0)" when out of memory.
  int Add() {
    int steps = 0;
    AddNode(&steps);
    return steps;
  }

  // Puts a node with undefined content directly before the current one and
  // makes it current; `plats` stays, as the new node takes the old place. On
  // an empty list: Add. Returns 0; -1 when the list has rows but no current
  // node. Throws "Minnebrist (Class list0)" when out of memory.
  int Insert() {
    if (forsta == nullptr) return Add();
    return InsertNode() != nullptr ? 0 : -1;
  }

  // Adds a row (`var` 1: Add, anything else: Insert) and fills it with a copy
  // of `*rec`, or with zeros when `rec` is null. Returns 0, or the negative
  // result of Insert.
  int Ny(int var, T* rec) {
    int steps = 0;
    Node* n = var == 1 || forsta == nullptr ? AddNode(&steps) : InsertNode();
    if (n == nullptr) return -1;
    if (rec != nullptr) {
      std::memcpy(static_cast<void*>(&n->rec), rec, sizeof(T));
    } else {
      std::memset(static_cast<void*>(&n->rec), 0, sizeof(T));
    }
    return 0;
  }

  // Removes the current row. The cursor goes to the following row, or, when
  // the last row was removed, to the new last row with `plats` one lower; a
  // loop that deletes as it walks does not step after a Delete. Deleting the
  // marked row clears the mark. Returns 0 while a current row remains; -1 on
  // an empty list, after the only row was removed, or with no current row.
  int Delete() {
    if (forsta == nullptr || aktel == nullptr) return -1;
    Node* gone = aktel;
    if (mark == gone) mark = nullptr;  // pmael keeps its stale value
    if (gone == forsta) {
      forsta = aktel = gone->next;
      if (forsta != nullptr) forsta->prev = nullptr;
      // With the only row gone `plats` stays 1, as the callers expect.
    } else if (gone->next != nullptr) {
      aktel = gone->next;
      gone->prev->next = gone->next;
      gone->next->prev = gone->prev;
    } else {
      aktel = gone->prev;
      aktel->next = nullptr;
      sista = aktel;
      --plats;
    }
    --antal;
    if (forsta == nullptr) sista = nullptr;
    gone->next = free_;
    free_ = gone;
    Set_pael();
    return aktel != nullptr ? 0 : -1;
  }

  // The cursor to the first row, `plats` 1. Returns 0; -1 on an empty list,
  // which changes nothing.
  int Home() {
    if (forsta == nullptr) return -1;
    aktel = forsta;
    plats = 1;
    Set_pael();
    return 0;
  }

  // The cursor to the last row, `plats` the number of rows. Returns 0; -1 on
  // an empty list, which changes nothing.
  int End() {
    if (forsta == nullptr) return -1;
    aktel = sista;
    plats = antal;
    Set_pael();
    return 0;
  }

  // The cursor one row on. Returns this list, or null without any change on
  // the last row, on an empty list or with no current row: that null is what
  // ends a walk.
  list0* operator++(int) {
    if (aktel == nullptr || aktel->next == nullptr) return nullptr;
    aktel = aktel->next;
    ++plats;
    Set_pael();
    return this;
  }

  // The cursor one row back. Returns this list, or null without any change on
  // the first row, on an empty list or with no current row.
  list0* operator--(int) {
    if (aktel == nullptr || aktel->prev == nullptr) return nullptr;
    aktel = aktel->prev;
    --plats;
    Set_pael();
    return this;
  }

  // Stores the number of rows in `*n` when `n` is not null. Returns the
  // 1-based place of the cursor, or -1 when the list is empty.
  int Where(int* n) {
    if (n != nullptr) *n = antal;
    return forsta == nullptr ? -1 : plats;
  }

  // Refreshes `pael` and returns the current record; null with no current row.
  T* Get_aktel() {
    Set_pael();
    return pael;
  }

  // Makes current the row whose record is `rec`, searching from the first row.
  // Returns 0; -1 when no row holds `rec`, which leaves no current row and
  // `pael` as it was. `plats` is not recomputed either way: callers that need
  // it follow with Where only after Home, End or Goto_mark.
  int Set_aktel(T* rec) {
    for (aktel = forsta; aktel != nullptr; aktel = aktel->next) {
      if (&aktel->rec == rec) {
        Set_pael();
        return 0;
      }
    }
    return -1;
  }

  // `pael` := record of the current row. Returns 0; -1 (and `pael` null)
  // with no current row.
  int Set_pael() {
    pael = aktel != nullptr ? &aktel->rec : nullptr;
    return aktel != nullptr ? 0 : -1;
  }

  // Marks the current row (and its record in `pmael`). Returns 0.
  int Set_mark() {
    mark = aktel;
    pmael = pael;
    return 0;
  }

  // Makes the marked row current, counting `plats` from the first row.
  // Returns 0; -1 with no mark (nothing changes) or when the marked row is no
  // longer in the list: then the mark is cleared, the cursor stands on the
  // first row (nowhere on an empty list) and `plats` holds the row count.
  int Goto_mark() {
    if (mark == nullptr) return -1;
    plats = 0;
    for (aktel = forsta; aktel != nullptr; aktel = aktel->next) {
      ++plats;
      if (aktel == mark) {
        Set_pael();
        return 0;
      }
    }
    aktel = forsta;
    mark = nullptr;
    Set_pael();
    return -1;
  }

  // Sorts the whole list by Sortval(key), stably: a row goes before an earlier
  // one exactly when Sortval, with the earlier row at `pael` and the later at
  // `pmael`, answers 1 or more. The same rows stay current and marked, but
  // `plats` keeps its old value until the next Home, End or Goto_mark.
  // Returns 0; -1 on an empty list. Records do not move. Throws "Minnebrist
  // (Pek-Class list0)" when out of memory (the list unchanged), and a
  // std::wstring when the rows found differ from the row count.
  int Sortera(int key) {
    if (antal < 1) return -1;
    if (antal == 1) return 0;
    Node* const saved_aktel = aktel;
    Node* const saved_mark = mark;
    const int found = CountNodes();
    if (found != antal) ThrowSorteraCount(found);
    MergeSort(key);
    aktel = saved_aktel;
    mark = saved_mark;
    Set_pael();
    Sort_mark();
    return 0;
  }

  // Sorts a list that is nearly in order by Sortval(key), into the same
  // order as Sortera; rows already in order cost one comparison each. Returns
  // 0; -1 on an empty list. Leaves cursor and mark where the last comparison
  // put them: reposition with Home or Set_aktel. Throws "Minnebrist
  // (Pek-Class list0)" when out of memory, and a std::wstring when the rows
  // found differ from the row count.
  int Omsortera(int key) {
    if (antal < 1) return -1;
    if (antal == 1) return 0;
    const int found = CountNodes();
    if (found != antal) ThrowOmsorteraCount(found);
    MergeSort(key);
    return 0;
  }

  Node* forsta = nullptr;  // first node; null when the list is empty
  Node* sista = nullptr;   // last node; meaningless while forsta is null
  Node* aktel = nullptr;   // current node
  Node* mark = nullptr;    // marked node; null when nothing is marked
  uint32_t nodord;         // node size in units of 4 bytes
  int32_t antal = 0;       // number of nodes
  int32_t plats = 0;       // 1-based place of the current node
  std::wstring feltext;    // scratch for the formatted sort failures
  T* pael = nullptr;       // record of the current node; null with none
  T* pmael = nullptr;      // record of the marked node as last refreshed

 private:
  struct Slab;
  Slab* slabs_ = nullptr;  // newest first
  Node* free_ = nullptr;   // deleted nodes, linked through next
  Node* fresh_ = nullptr;  // the never-used nodes of the newest slab
  Node* fresh_end_ = nullptr;
  size_t slab_nodes_ = 1;  // size of the next slab of the doubling

 protected:
  // `pmael` := record of the marked row. Returns 0; -1 (and `pmael` null)
  // with no mark.
  int Sort_mark() {
    pmael = mark != nullptr ? &mark->rec : nullptr;
    return mark != nullptr ? 0 : -1;
  }

  // The stable selection sort that defines the order of Sortera: each round
  // takes the first unranked row as candidate and lets every later unranked
  // row replace it when Sortval ranks that row before the candidate (1 or
  // more). Equal rows thus keep their order, and a Sortval that always answers
  // 1 picks the last unranked row each round, reversing the list. Quadratic;
  // touches links only.
  int SorteraUrval(int key) {
    if (antal < 1) return -1;
    if (antal == 1) return 0;
    Node* const saved_aktel = aktel;
    Node* const saved_mark = mark;
    const int n = antal;
    Node** pek = new (std::nothrow) Node*[n + 1];
    if (pek == nullptr) throw L"Minnebrist (Pek-Class list0)";
    int* rank = new (std::nothrow) int[n + 1];
    if (rank == nullptr) {
      delete[] pek;
      throw L"Minnebrist (Sort-Class list0)";
    }
    const int found = TableInListOrder(pek, rank, n);
    RankBySelection(key, pek, rank, found);
    aktel = saved_aktel;
    mark = saved_mark;
    if (rank[0] != n) {
      const int placed = rank[0];
      delete[] pek;
      delete[] rank;
      Set_pael();
      Sort_mark();
      ThrowSorteraCount(placed);
    }
    RelinkByRank(pek, rank, n);
    Set_pael();
    Sort_mark();
    delete[] pek;
    delete[] rank;
    return 0;
  }

  // The insertion sort that defines the order of Omsortera: each row that
  // stands before its predecessor is taken out and put before the first row
  // from the front that it goes before. Quadratic unless nearly sorted.
  // Throws "Internt sorteringsfel i Todbs::Sortera" when a row finds no
  // place, and a std::wstring when the rows placed differ from the row count;
  // both mean that Sortval answers inconsistently.
  int OmsorteraInsattning(int key) {
    if (antal < 1) return -1;
    if (antal == 1) return 0;
    int placed = 1;
    Node* a = forsta;
    // A consistent Sortval places each row once; one that contradicts itself
    // could put a row back where it was for ever, so more placements than rows
    // end the walk and are reported as a miscount.
    while (a->next != nullptr && placed <= antal) {
      Node* b = a->next;
      aktel = a;
      Set_pael();
      mark = b;
      Sort_mark();
      if (Sortval(key) < 1) {
        a = b;
      } else {
        MoveBeforeFirstGreater(key, a, b);  // a gets another successor, or none
      }
      ++placed;
    }
    if (placed != antal) ThrowOmsorteraCount(placed);
    return 0;
  }

 private:
  static uint32_t NodeUnits() {
    return static_cast<uint32_t>((2 * sizeof(Node*) + sizeof(T) + 3) / 4);
  }

  // A slab's header; its nodes follow, the first at kSlabHeader.
  struct Slab {
    Slab* next;
  };
  static constexpr size_t kSlabHeader =
      (sizeof(Slab) + alignof(Node) - 1) / alignof(Node) * alignof(Node);
  // Slabs stop doubling at about this size: beyond it the saving in
  // allocations is nil and the unused tail only costs.
  static constexpr size_t kSlabBytesCap = size_t{64} << 10;
  static_assert(alignof(Node) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

  // A node from the free list, else from the newest slab, else from a new
  // slab; null when out of memory.
  Node* NewNode() {
    if (free_ != nullptr) {
      Node* n = free_;
      free_ = n->next;
      return n;
    }
    if (fresh_ == fresh_end_ && !GrowSlabs()) return nullptr;
    return fresh_++;
  }

  // Adds the next slab of the doubling; when memory is short, the largest
  // smaller one that can be had.
  bool GrowSlabs() {
    const size_t cap = kSlabBytesCap / sizeof(Node) > 0 ? kSlabBytesCap / sizeof(Node) : 1;
    for (size_t want = slab_nodes_ < cap ? slab_nodes_ : cap; want > 0; want /= 2) {
      if (AddSlab(want)) {
        if (slab_nodes_ < cap) slab_nodes_ *= 2;
        return true;
      }
    }
    return false;
  }

  // A new slab of `count` nodes becomes the fresh one; what was left of the
  // old one goes to the free list so that no node is lost.
  bool AddSlab(size_t count) {
    if (count > (SIZE_MAX - kSlabHeader) / sizeof(Node)) return false;
    void* raw = ::operator new(kSlabHeader + count * sizeof(Node), std::nothrow);
    if (raw == nullptr) return false;
    while (fresh_ != fresh_end_) {
      Node* n = fresh_++;
      n->next = free_;
      free_ = n;
    }
    Slab* slab = static_cast<Slab*>(raw);
    slab->next = slabs_;
    slabs_ = slab;
    fresh_ = reinterpret_cast<Node*>(static_cast<char*>(raw) + kSlabHeader);
    fresh_end_ = fresh_ + count;
    return true;
  }

  // Add, handing back the new node and the steps the cursor took.
  Node* AddNode(int* steps) {
    Node* n = NewNode();
    if (n == nullptr) throw L"Minnesbrist (Class list0)";
    n->next = nullptr;
    if (forsta == nullptr) {
      forsta = aktel = n;
      n->prev = nullptr;
      plats = 1;
    } else {
      sista->next = n;
      n->prev = sista;
    }
    // Walking the cursor keeps `plats` right; from the last row it is one step.
    if (aktel != nullptr) {
      while (aktel != n) {
        aktel = aktel->next;
        ++plats;
        ++*steps;
      }
    }
    ++antal;
    sista = n;
    Set_pael();
    return n;
  }

  // Insert on a list with rows; null when there is no current row.
  Node* InsertNode() {
    if (aktel == nullptr) return nullptr;
    Node* n = NewNode();
    if (n == nullptr) throw L"Minnebrist (Class list0)";
    LinkBefore(n, aktel);
    aktel = n;
    ++antal;
    Set_pael();
    return n;
  }

  // Links the free node `n` directly before `c`.
  void LinkBefore(Node* n, Node* c) {
    n->next = c;
    n->prev = c->prev;
    if (c->prev != nullptr) {
      c->prev->next = n;
    } else {
      forsta = n;
    }
    c->prev = n;
  }

  int CountNodes() const {
    int n = 0;
    for (Node* x = forsta; x != nullptr; x = x->next) ++n;
    return n;
  }

  // Whether the later node `b` goes before the earlier node `a`: Sortval
  // with `a` current and `b` marked, as the selection sort asks.
  bool LaterGoesFirst(int key, Node* a, Node* b) {
    aktel = a;
    pael = &a->rec;
    mark = b;
    pmael = &b->rec;
    return Sortval(key) >= 1;
  }

  // A natural merge sort of the links. The list is cut into runs already in
  // order, and neighbouring runs are merged, the later row first only when it
  // goes before the earlier one. For every comparison that orders the rows
  // totally once ties are broken by their places (the strict orders, the
  // descending ones that answer 1 for equals, a constant 0 or 1) this is the
  // order of the selection sort, with n log n comparisons instead of n^2.
  // While merging only the next-links count; the back-links are set at the end.
  void MergeSort(int key) {
    Node** runs = new (std::nothrow) Node*[static_cast<size_t>(antal)];
    if (runs == nullptr) throw L"Minnebrist (Pek-Class list0)";
    int count = CutIntoRuns(key, runs);
    while (count > 1) {
      int merged = 0;
      for (int i = 0; i + 1 < count; i += 2) runs[merged++] = MergeRuns(key, runs[i], runs[i + 1]);
      if (count % 2 == 1) runs[merged++] = runs[count - 1];
      count = merged;
    }
    forsta = runs[0];
    delete[] runs;
    Node* prev = nullptr;
    for (Node* x = forsta; x != nullptr; x = x->next) {
      x->prev = prev;
      prev = x;
    }
    sista = prev;
  }

  // Cuts the chain where a row goes before its predecessor; each run ends in
  // a null next-link. Returns the number of runs, their heads in `runs`.
  int CutIntoRuns(int key, Node** runs) {
    int count = 0;
    runs[count++] = forsta;
    for (Node* a = forsta; a->next != nullptr;) {
      Node* b = a->next;
      if (LaterGoesFirst(key, a, b)) {
        a->next = nullptr;
        runs[count++] = b;
      }
      a = b;
    }
    return count;
  }

  // Merges two sorted runs, every row of `first` coming from before every row
  // of `second`. Returns the head of the merged run.
  Node* MergeRuns(int key, Node* first, Node* second) {
    Node* head = nullptr;
    Node** tail = &head;
    while (first != nullptr && second != nullptr) {
      Node*& taken = LaterGoesFirst(key, first, second) ? second : first;
      *tail = taken;
      tail = &taken->next;
      taken = taken->next;
    }
    *tail = first != nullptr ? first : second;
    return head;
  }

  // Fills the tables in list order, at most `n` entries, rank 0 everywhere.
  // Returns how many nodes there were to table.
  int TableInListOrder(Node** pek, int* rank, int n) {
    int i = 0;
    rank[0] = 0;
    for (Node* x = forsta; x != nullptr && i < n; x = x->next) {
      ++i;
      pek[i] = x;
      rank[i] = 0;
    }
    return i;
  }

  void RankBySelection(int key, Node** pek, int* rank, int count) {
    for (;;) {
      aktel = nullptr;
      int candidate = 0;
      for (int i = 1; i <= count; ++i) {
        if (rank[i] != 0) continue;
        if (aktel != nullptr) {
          mark = pek[i];
          Sort_mark();
          if (Sortval(key) < 1) continue;
        }
        aktel = pek[i];
        Set_pael();
        candidate = i;
      }
      if (aktel == nullptr) return;
      rank[candidate] = ++rank[0];
    }
  }

  // Sets the links from the ranks: each node's neighbours are the nodes of
  // one rank less and one more.
  void RelinkByRank(Node** pek, const int* rank, int n) {
    for (int i = 1; i <= n; ++i) {
      Node* x = pek[i];
      x->prev = rank[i] == 1 ? nullptr : pek[IndexOfRank(rank, n, rank[i] - 1)];
      x->next = rank[i] == n ? nullptr : pek[IndexOfRank(rank, n, rank[i] + 1)];
      if (rank[i] == 1) forsta = x;
      if (rank[i] == n) sista = x;
    }
  }

  static int IndexOfRank(const int* rank, int n, int r) {
    for (int i = 1; i <= n; ++i) {
      if (rank[i] == r) return i;
    }
    return 0;
  }

  // Omsortera's move of `b`, which Sortval put before its predecessor `a`:
  // out of the chain, then directly before the first row from the front that
  // it goes before. When no row takes it, Sortval contradicted itself; `b`
  // goes back behind `a` so that the list stays whole, and the failure is
  // thrown.
  void MoveBeforeFirstGreater(int key, Node* a, Node* b) {
    a->next = b->next;
    if (b->next != nullptr) {
      b->next->prev = a;
    } else {
      sista = a;
    }
    b->prev = b->next = nullptr;
    Sort_mark();
    for (Node* c = forsta; c != nullptr; c = c->next) {
      aktel = c;
      Set_pael();
      if (Sortval(key) > 0) {
        LinkBefore(b, c);
        return;
      }
    }
    LinkAfter(b, a);
    throw L"Internt sorteringsfel i Todbs::Sortera";
  }

  void LinkAfter(Node* n, Node* a) {
    n->prev = a;
    n->next = a->next;
    if (a->next != nullptr) {
      a->next->prev = n;
    } else {
      sista = n;
    }
    a->next = n;
  }

  [[noreturn]] void ThrowSorteraCount(int placed) {
    feltext = L"Sorteringfel ! " + std::to_wstring(static_cast<long>(placed)) + L" st av " +
              std::to_wstring(static_cast<long>(antal));
    throw feltext;
  }

  [[noreturn]] void ThrowOmsorteraCount(int placed) {
    feltext = L"Fel i sortering\nAntal poster " + std::to_wstring(static_cast<long>(antal)) +
              L"\nSorterade " + std::to_wstring(static_cast<long>(placed));
    throw feltext;
  }
};

#endif  // KORVO_FOUNDATION_LIST0_H_
