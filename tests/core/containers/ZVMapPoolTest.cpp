#include "core/containers/ZVMapPool.h"
#include "core/containers/ZVUniqueList.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>

namespace
{
// Takes nodes and writes all their bytes, so that one outside its block is found out.
void TakeNodes(ZVMapPool& pool, size_t nodeSize, int32_t count, std::set<void*>& nodes)
{
    for (int32_t taken = 0; taken < count; ++taken)
    {
        void* const node = pool.Allocate();
        EXPECT_EQ(reinterpret_cast<uintptr_t>(node) % 8, 0u);
        EXPECT_TRUE(nodes.insert(node).second);
        memset(node, 0x5a, nodeSize);
    }
}

TEST(ZVMapPool, BlocksFillUpAndAreSortedOut)
{
    struct Row
    {
        const char* Name;
        size_t BlockSize;
        size_t NodeSize;
        int32_t Nodes;
        int32_t WithRoom;
        int32_t UsedUp;
    };
    constexpr Row Rows[] = {
        {"two nodes a block",                      40, 16, 2,   1, 0  },
        {"what is left is below a node",           40, 16, 3,   1, 1  },
        {"a block is never smaller than a node",   0,  24, 3,   1, 2  },
        {"padding between odd nodes",              28, 12, 2,   1, 0  },
        {"only the padding does not fit",          26, 12, 2,   2, 0  },
        {"such blocks stay up to index 8",         26, 12, 9,   9, 0  },
        {"such a block at index 8 goes",           26, 12, 10,  9, 1  },
        {"more blocks than the scan index counts", 26, 12, 300, 9, 291},
    };
    for (const Row& row : Rows)
    {
        SCOPED_TRACE(row.Name);
        ZVMapPool pool(row.BlockSize, row.NodeSize);
        std::set<void*> nodes;
        TakeNodes(pool, row.NodeSize, row.Nodes, nodes);
        EXPECT_EQ(pool.GetBlocksWithRoom(), row.WithRoom);
        EXPECT_EQ(pool.GetUsedUpBlocks(), row.UsedUp);

        pool.Reset();
        EXPECT_EQ(pool.GetBlocksWithRoom(), row.WithRoom + row.UsedUp);
        EXPECT_EQ(pool.GetUsedUpBlocks(), 0);
        nodes.clear();
        TakeNodes(pool, row.NodeSize, row.Nodes, nodes);
        EXPECT_EQ(pool.GetBlocksWithRoom() + pool.GetUsedUpBlocks(), row.WithRoom + row.UsedUp);
    }
}

TEST(ZVMapPool, ServesAMap)
{
    ZVUniqueList<int> set;
    EXPECT_TRUE(set.SetUsePool(true, 64));
    for (int round = 0; round < 2; ++round)
    {
        for (int key = 0; key < 1000; ++key)
            EXPECT_TRUE(set.Add(key));
        EXPECT_TRUE(set.Remove(500));
        EXPECT_FALSE(set.Contains(500));
        EXPECT_TRUE(set.Contains(501));
        EXPECT_FALSE(set.SetUsePool(false));
        set.RemoveAll();
        EXPECT_EQ(set.GetCount(), 0);
    }
    EXPECT_TRUE(set.SetUsePool(false));
    EXPECT_TRUE(set.Add(1));
}
}
