#include "datalib/TORVDirectory.h"

#include "TreeTest.h"

namespace
{

// A tree without files, for what concerns the nodes alone.
class BareTop final : public TORVDirTop
{
public:
    BareTop() : TORVDirTop(QStringLiteral("/nowhere")) {}

    bool filter(const TORVFile::CPtr&) const override { return true; }
};

class TORVDirectoryTest : public TreeTest
{
protected:
    TORVFileLeaf::Ptr addLeaf(const QString& configuration, const QString& time, const TORVFile::CPtr& file = {})
    {
        return boost::static_pointer_cast<TORVFileLeaf>(top.addChild("HALMERA", file)
                                                            ->addChild("CAPPI", file)
                                                            ->addChild(configuration, file)
                                                            ->addChild(time, file));
    }

    TORVDirectory::Ptr configuration(const QString& name) const
    {
        return top.findChildByName("HALMERA")->findChildByName("CAPPI")->findChildByName(name);
    }

    std::string printed(const TORVDirectory& node)
    {
        testing::internal::CaptureStdout();
        node.printSelf();
        return testing::internal::GetCapturedStdout();
    }

    BareTop top;
};

} // namespace

TEST_F(TORVDirectoryTest, NumbersItsTypes)
{
    EXPECT_EQ(TORVDirectory::TYPE_TOP, 0);
    EXPECT_EQ(TORVDirectory::TYPE_SITE, 1);
    EXPECT_EQ(TORVDirectory::TYPE_PRODUCT, 2);
    EXPECT_EQ(TORVDirectory::TYPE_CONFIGURATION, 3);
    EXPECT_EQ(TORVDirectory::TYPE_LEAF, 4);
}

TEST_F(TORVDirectoryTest, MakesTheChildThatBelongsBelowEachType)
{
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000");
    const TORVDirectory::Ptr site = top.findChildByName("HALMERA");
    const TORVDirectory::Ptr product = site->findChildByName("CAPPI");
    EXPECT_TRUE(boost::dynamic_pointer_cast<TORVDirSite>(site));
    EXPECT_TRUE(boost::dynamic_pointer_cast<TORVDirProduct>(product));
    EXPECT_TRUE(boost::dynamic_pointer_cast<TORVDirConfiguration>(product->findChildByName("Z")));
    EXPECT_EQ(site->getType(), TORVDirectory::TYPE_SITE);
    EXPECT_EQ(product->getType(), TORVDirectory::TYPE_PRODUCT);
    EXPECT_EQ(product->findChildByName("Z")->getType(), TORVDirectory::TYPE_CONFIGURATION);
    EXPECT_EQ(leaf->getType(), TORVDirectory::TYPE_LEAF);
}

TEST_F(TORVDirectoryTest, IsValidAboveTheLeavesWithoutAFile)
{
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000");
    EXPECT_TRUE(top.findChildByName("HALMERA")->isValid());
    EXPECT_TRUE(top.findChildByName("HALMERA")->findChildByName("CAPPI")->isValid());
    EXPECT_TRUE(configuration("Z")->isValid());
    EXPECT_FALSE(leaf->isValid());
}

TEST_F(TORVDirectoryTest, KnowsParentsByName)
{
    addLeaf("Z", "260714120000");
    const auto product =
        boost::dynamic_pointer_cast<TORVDirProduct>(top.findChildByName("HALMERA")->findChildByName("CAPPI"));
    const auto node = boost::dynamic_pointer_cast<TORVDirConfiguration>(configuration("Z"));
    EXPECT_EQ(product->getSite(), "HALMERA");
    EXPECT_EQ(node->getSite(), "HALMERA");
    EXPECT_EQ(node->getProduct(), "CAPPI");
    EXPECT_EQ(node->getParent(), product.get());
    EXPECT_EQ(top.getParent(), nullptr);
    EXPECT_EQ(top.getName(), "");
}

TEST_F(TORVDirectoryTest, LeavesAnExistingChildAsItIs)
{
    const TORVFile::CPtr first = TORVFile::openChecked(write("HAL260714120000.A", volume("HALMERA")));
    const TORVFile::CPtr second = TORVFile::openChecked(write("HAL260714120000.B", volume("HALMERA")));
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000", first);
    EXPECT_EQ(addLeaf("Z", "260714120000", second), leaf);
    EXPECT_EQ(leaf->getFile(), first);
}

TEST_F(TORVDirectoryTest, KeepsChildrenInAscendingOrder)
{
    addLeaf("Z", "2");
    addLeaf("", "2");
    addLeaf("V", "2");
    EXPECT_EQ(configuration("Z")->getParent()->getChildrenNames(), (QStringList{"", "V", "Z"}));
    EXPECT_EQ(configuration("Z")->getParent()->getChildren()->keys(), (QStringList{"", "V", "Z"}));
}

TEST_F(TORVDirectoryTest, FindsNullForAChildThatIsNotThere)
{
    EXPECT_FALSE(top.findChildByName("HALMERA"));
}

TEST_F(TORVDirectoryTest, TakesANullNameForAnEmptyOne)
{
    const TORVFileLeaf::Ptr leaf = addLeaf(QString(), "260714120000");
    EXPECT_EQ(addLeaf("", "260714120000"), leaf);
    EXPECT_FALSE(leaf->getConfiguration().isNull());
    EXPECT_EQ(leaf->getConfiguration(), "");
}

TEST_F(TORVDirectoryTest, StoresANullChildBelowALeaf)
{
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000");
    EXPECT_FALSE(leaf->addChild("below", {}));
    EXPECT_EQ(leaf->getChildrenNames(), QStringList{"below"});
    EXPECT_FALSE(leaf->findChildByName("below"));
}

TEST_F(TORVDirectoryTest, PrunesEmptyBranchesUpToTheTop)
{
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000");
    leaf->getParent()->removeChild("260714120000");
    EXPECT_EQ(top.getChildrenNames(), QStringList());
}

TEST_F(TORVDirectoryTest, PrunesNoBranchThatHoldsMore)
{
    const TORVFileLeaf::Ptr one = addLeaf("Z", "1");
    addLeaf("Z", "2");
    addLeaf("V", "1");
    one->getParent()->removeChild("1");
    EXPECT_EQ(configuration("Z")->getChildrenNames(), QStringList{"2"});
    configuration("Z")->removeChild("2");
    EXPECT_FALSE(configuration("Z"));
    EXPECT_TRUE(configuration("V"));
}

TEST_F(TORVDirectoryTest, RemovesNothingForAnUnknownName)
{
    addLeaf("Z", "1");
    configuration("Z")->removeChild("2");
    EXPECT_EQ(configuration("Z")->getChildrenNames(), QStringList{"1"});
}

TEST_F(TORVDirectoryTest, HasNoParentOnceItHasLeftTheTree)
{
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000");
    const TORVDirectory::Ptr site = top.findChildByName("HALMERA");
    top.removeChild("HALMERA");
    EXPECT_EQ(site->getParent(), nullptr);
    EXPECT_NE(leaf->getParent(), nullptr); // the site holds its branch together
}

TEST_F(TORVDirectoryTest, LeafOutlivesItsTreeWithItsNames)
{
    TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000");
    top.removeChild("HALMERA");
    EXPECT_EQ(leaf->getParent(), nullptr);
    EXPECT_EQ(leaf->getSite(), "HALMERA");
    EXPECT_EQ(leaf->getProduct(), "CAPPI");
    EXPECT_EQ(leaf->getConfiguration(), "Z");
    EXPECT_EQ(leaf->getTime(), "260714120000");
    EXPECT_EQ(leaf->getName(), "260714120000");
}

TEST_F(TORVDirectoryTest, LeafIsAsValidAsItsFile)
{
    const QString path = files.writeGarbage("GAR260714120000.CAPZ", 1000);
    const TORVFileLeaf::Ptr bad = addLeaf("Z", "1", TORVFile::openChecked(path));
    const TORVFileLeaf::Ptr good = addLeaf("Z", "2", TORVFile::openChecked(write("b", volume("HALMERA"))));
    EXPECT_FALSE(bad->isValid());
    EXPECT_TRUE(good->isValid());
    EXPECT_EQ(bad->getPath(), path);
}

TEST_F(TORVDirectoryTest, LeafTellsTheTimeOfItsData)
{
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "1", TORVFile::openChecked(write("a", volume("HALMERA", Z, 7))));
    EXPECT_EQ(leaf->dataTime_ms(), at(7).toMSecsSinceEpoch());
}

TEST_F(TORVDirectoryTest, PrintsItsNameAndAncestorsUpwards)
{
    addLeaf("Z", "260714120000");
    EXPECT_EQ(printed(*configuration("Z")), "\nname: Z\nparent: .CAPPI.HALMERA\n");
    EXPECT_EQ(printed(*top.findChildByName("HALMERA")), "\nname: HALMERA\nparent: \n");
}

TEST_F(TORVDirectoryTest, TopPrintsItsPath)
{
    EXPECT_EQ(printed(top), "\nname: \nparent: \n\npath: /nowhere\n");
}

TEST_F(TORVDirectoryTest, LeafPrintsItsFile)
{
    const QString path = write("HAL260714120000.CAPZ", volume("HALMERA"));
    const TORVFileLeaf::Ptr leaf = addLeaf("Z", "260714120000", TORVFile::openChecked(path));
    EXPECT_EQ(printed(*leaf), "\nname: 260714120000\nparent: .Z.CAPPI.HALMERA\npath: " + path.toStdString() +
                                  "\nwidth, height, depth: 4 x 3 x 2\nscaling: 100000 x 100000 x 75000"
                                  "\ndata item size: 1\n");
}

TEST_F(TORVDirectoryTest, LeafWithoutAGoodFilePrintsItsPlaceOnly)
{
    EXPECT_EQ(printed(*addLeaf("Z", "1")), "\nname: 1\nparent: .Z.CAPPI.HALMERA\n");
}
