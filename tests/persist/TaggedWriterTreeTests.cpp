// The tree that MoveDown builds, checked against a plain model of groups
// and values, through long sibling lists where the writer indexes names.

#include "TaggedDocuments.h"

#include "math/TRandomizer.h"
#include "persist/TTaggedOutputStream.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

struct ModelNode
{
    std::string name;
    bool group = false;
    bool nameBehind = false; // an empty value: its name offset points behind its name
    ModelNode* parent = nullptr;
    std::vector<std::unique_ptr<ModelNode>> children;
};

// Compares the written group with the model, child by child.
void Compare(Bytes const& bytes, int group, ModelNode const& model, std::string const& path)
{
    std::vector<Node> const nodes = Children(bytes, group);
    ASSERT_EQ(nodes.size(), model.children.size()) << path;
    for (size_t n = 0; n < nodes.size(); ++n) {
        ModelNode const& expected = *model.children[n];
        std::string const where = path + "/" + expected.name;
        ASSERT_EQ(nodes[n].dataOffset == 0, expected.group) << where;
        if (!expected.nameBehind) {
            ASSERT_EQ(nodes[n].name, expected.name) << where;
        }
        if (expected.group) {
            ASSERT_EQ(IntAt(bytes.data(), nodes[n].offset + 8), group) << where;
            Compare(bytes, nodes[n].offset, expected, where);
        }
    }
}

void RunRandomTree(unsigned seed, bool withEmptyValue)
{
    // "g" finds a group that "long:g" made, which "long:g" itself never does.
    static char const* const groupTags[] = { "a", "b", "grp", "long:g", "zz", "g" };
    static char const* const valueTags[] = { "v", "w", "val" };
    TRandomizer random(seed);
    TTaggedOutputStream stream(streamModeRawTags, "Tree");
    ModelNode root;
    root.group = true;
    ModelNode* current = &root;
    int depth = 0;
    if (withEmptyValue) {
        // A value of 0 bytes: its name offset reads behind its name, so the
        // writer walks the lists instead of indexing them.
        stream.SetBinary(nullptr, 0, "e");
        root.children.push_back(std::make_unique<ModelNode>());
        root.children.back()->name = "e";
        root.children.back()->nameBehind = true;
    }
    for (int step = 0; step < 4000; ++step) {
        int const choice = random.Get(100);
        if (choice < 45 && depth < 2) {
            char const* tag = groupTags[random.Get(6)];
            int const index = random.Get(current == &root ? 60 : 4);
            stream.MoveDown(tag, index);
            char const* colon = std::strchr(tag, ':');
            std::string const name = std::string(colon ? colon + 1 : tag) + (index ? std::to_string(index) : "");
            ModelNode* found = nullptr;
            if (!colon) // a tag with ":" is searched as given and never found
                for (auto& child : current->children)
                    if (child->name == name) {
                        found = child.get();
                        break;
                    }
            if (!found) {
                current->children.push_back(std::make_unique<ModelNode>());
                found = current->children.back().get();
                found->name = name;
                found->group = true;
                found->parent = current;
            }
            current = found;
            ++depth;
        } else if (choice < 75) {
            if (current != &root) {
                stream.MoveUp();
                current = current->parent;
                --depth;
            }
        } else {
            char const* tag = valueTags[random.Get(3)];
            int const index = random.Get(3);
            stream.SetValue(step, tag, index);
            current->children.push_back(std::make_unique<ModelNode>());
            current->children.back()->name = std::string(tag) + (index ? std::to_string(index) : "");
        }
    }
    int const rootGroup = stream.GetRootGroup();
    ASSERT_GT(root.children.size(), 100u); // long enough to be indexed
    Compare(Document(stream), rootGroup, root, "");
}

} // namespace

TEST(TaggedWriterTree, MoveDownFindsTheFirstChildOfItsName)
{
    for (unsigned seed : { 1u, 2u, 3u })
        RunRandomTree(seed, false);
}

TEST(TaggedWriterTree, AnEmptyValueLeavesTheSameTree)
{
    RunRandomTree(4, true);
}
