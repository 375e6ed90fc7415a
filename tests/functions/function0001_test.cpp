#include "functions/function0001.h"

#include "additions/ovapplication.h"
#include "additions/propertylist.h"
#include "audiofixtures.h"
#include "functions/builtinfunctions.h"
#include "pool/functionpoollog.h"
#include "pool/functionpoolpreferences.h"
#include "pooltestsupport.h"
#include "testenvironment.h"

#include <QFileInfo>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryDir>

namespace {

struct ModeCase
{
    const char *what;
    qint64 mode;
    bool ignoreCase;
    QString search;
    QString replace;
    QString tag;
    QString expected;
};

class SearchReplaceTest : public PoolTest
{
protected:
    void SetUp() override
    {
        PoolTest::SetUp();
        registerBuiltInFunctions(functions);
        makePool({});
        pool->myPreferences()->setPrefLogChangedTracks(true);
        pool->myPreferences()->setPrefLogUnchangedTracks(true);
        searchReplace()->yourArtist = searchReplace()->yourAlbum = searchReplace()->yourAlbumArtist = false;
    }

    Function0001 *searchReplace() const { return static_cast<Function0001 *>(pool->myFunction(1)); }

    void setPanel(qint64 mode, bool ignoreCase, const QString &search, const QString &replace)
    {
        searchReplace()->setYourSearchMode(mode);
        searchReplace()->yourIgnoreCase = ignoreCase;
        searchReplace()->yourSearchText = search;
        searchReplace()->yourReplaceText = replace;
    }

    // Runs function 1 on one new selected track named `name`; answers its name afterwards.
    QString runOnName(const QString &name)
    {
        const MemoryObjectPtr track = player->addFileTrack(name, QStringLiteral("/music/t.mp3"));
        player->setSelection({track});
        player->resetWriteCounts();
        runFunction(1);
        return track->stored(Prop::name).toString();
    }

    QString lastIcon() const
    {
        const QList<QVariantMap> entries = pool->myFunctionPoolLog()->yourLogEntries();
        return entries.isEmpty() ? QString() : entries.last().value("Icon").toString();
    }
};

TEST_F(SearchReplaceTest, EachModeFindsAndReplacesAsItsRuleSays)
{
    const QList<ModeCase> cases = {
        {"whole word: the point is no word character", 4, true, "ft.", "feat.", "ft.", "ft."},
        {"everywhere finds the same", 1, true, "ft.", "feat.", "A ft. B", "A feat. B"},
        {"everywhere ignoring case", 1, true, "FT.", "feat.", "A ft. B", "A feat. B"},
        {"first occurrence in each word", 8, true, "a", "4", "banana cabana", "b4nana c4bana"},
        {"everywhere takes them all", 1, true, "a", "4", "banana cabana", "b4n4n4 c4b4n4"},
        {"end of a word leaves a middle one", 3, true, "an", "X", "mango ban", "mango bX"},
        {"start of a word", 2, true, "an", "X", "and band", "Xd band"},
        {"whole word in several places", 4, true, "the", "The", "the other THE", "The other The"},
        {"whole word respecting case", 4, false, "the", "The", "the other THE", "The other THE"},
        {"a separator is an entry of its own", 4, true, "&", "and", "A & B", "A and B"},
        {"apostrophes belong to words", 4, true, "don't", "do not", "I don't", "I do not"},
        {"start of the text only", 5, true, "the ", "", "the the end", "the end"},
        {"end of the text only", 6, true, "end", "END", "end of the end", "end of the END"},
        {"whole text ignoring case", 7, true, "hello WORLD", "Hi", "HELLO world", "Hi"},
        {"whole text respecting case", 7, false, "hello WORLD", "Hi", "HELLO world", "HELLO world"},
        {"whole text must be all of it", 7, true, "hello", "Hi", "hello world", "hello world"},
        {"regular expression with groups", 9, true, "(\\w+) ft\\. (\\w+)", "$2 & $1", "A ft. B", "B & A"},
        {"regular expression respects case", 9, true, "FT", "x", "ft", "ft"},
        {"unknown mode: everywhere, respecting case", 12, true, "ft.", "feat.", "FT. ft.", "FT. feat."},
    };
    for (const ModeCase &c : cases) {
        setPanel(c.mode, c.ignoreCase, c.search, c.replace);
        EXPECT_EQ(runOnName(c.tag), c.expected) << c.what;
        const bool changed = c.expected != c.tag;
        EXPECT_EQ(player->writeCount(Prop::name), changed ? 1 : 0) << c.what;
        EXPECT_EQ(lastIcon(), FunctionPoolLog::iconForChangeState(changed ? TrackLogState::Changed : TrackLogState::Unchanged)) << c.what;
    }
}

TEST_F(SearchReplaceTest, AnEmptySearchFillsAnEmptyTagInEveryMode)
{
    for (qint64 mode = 1; mode <= 9; ++mode) {
        setPanel(mode, true, "", "Unknown");
        EXPECT_EQ(runOnName(""), "Unknown") << "mode " << mode;
        setPanel(mode, true, "x", "Unknown");
        EXPECT_EQ(runOnName(""), "") << "a search text leaves an empty tag alone, mode " << mode;
    }
}

TEST_F(SearchReplaceTest, TidiedSpacesAloneCountAsAChange)
{
    setPanel(1, true, "nowhere", "x");
    EXPECT_EQ(runOnName(" A  B "), "A B");
    EXPECT_EQ(lastIcon(), FunctionPoolLog::iconForChangeState(TrackLogState::Changed));

    searchReplace()->yourRemoveSpaces = false;
    EXPECT_EQ(runOnName(" A  B "), " A  B ");
    EXPECT_EQ(player->writeCount(Prop::name), 0);
}

TEST_F(SearchReplaceTest, WordModeSetsShareTheWordListUntilSomethingChanges)
{
    searchReplace()->searchSetsModel()->setSearchSets({{"xx", "y", 1, SearchMode::WordEnd}, {"ft", "xx", 1, SearchMode::Everywhere}, {"feat", "f", 1, SearchMode::WholeWord}});
    setPanel(2, true, "qq", "z");
    // Without the rebuild after the change by mode 1, the last set would scan the old words.
    EXPECT_EQ(runOnName("ft feat"), "xx f");
    EXPECT_EQ(searchReplace()->wordListBuildCount(), 2);

    searchReplace()->searchSetsModel()->setSearchSets({{"xx", "y", 1, SearchMode::WordEnd}, {"yy", "z", 1, SearchMode::FirstInWord}});
    EXPECT_EQ(runOnName("ft feat"), "ft feat");
    EXPECT_EQ(searchReplace()->wordListBuildCount(), 1);
}

TEST_F(SearchReplaceTest, ThePanelSetRunsBeforeTheSavedSetsInTheirOrder)
{
    PropertyList::write(OVApplication::ov_applicationOrganizerURLForPlistSearchAndReplaceSets(),
                        QVariantList{SearchSet{"b", "c", 0, SearchMode::Everywhere}.toMap(), SearchSet{"c", "d", 0, SearchMode::Everywhere}.toMap()});
    searchReplace()->reloadSearchSets();
    setPanel(1, false, "a", "b");
    EXPECT_EQ(runOnName("a"), "d");
    searchReplace()->yourSearchSetSearch = false;
    EXPECT_EQ(runOnName("a"), "b");
}

TEST_F(SearchReplaceTest, AnInvalidPatternIsOneErrorPerTrack)
{
    const QList<MemoryObjectPtr> tracks = addSelectedTracks(3);
    setPanel(9, true, "(", "x");
    runFunction(1);
    EXPECT_EQ(pool->myFunctionPoolErrorLog()->yourErrorLogEntries().size(), 3);
    for (const MemoryObjectPtr &track : tracks)
        EXPECT_TRUE(track->stored(Prop::name).toString().startsWith("Track"));
    EXPECT_EQ(lastIcon(), FunctionPoolLog::iconForChangeState(TrackLogState::Error));
}

TEST_F(SearchReplaceTest, CheckRefusesRunsWithoutTagsOrTexts)
{
    Function0001 *f = searchReplace();
    EXPECT_EQ(f->doMyFunctionCheck(), PoolStep::GoOn);
    f->yourSearchText.clear();
    f->yourReplaceText.clear();
    EXPECT_EQ(f->doMyFunctionCheck(), PoolAlertCode::IncompleteSettings) << "no texts and no saved sets";
    f->searchSetsModel()->setSearchSets({{"a", "b", 1, SearchMode::Everywhere}});
    EXPECT_EQ(f->doMyFunctionCheck(), PoolStep::GoOn) << "the saved sets carry the run";
    f->yourSearchSetSearch = false;
    EXPECT_EQ(f->doMyFunctionCheck(), PoolAlertCode::IncompleteSettings);
    f->yourReplaceText = "x";
    f->deselectAllTags();
    EXPECT_EQ(f->doMyFunctionCheck(), PoolAlertCode::IncompleteSettings) << "no tag chosen";
    f->yourEpisodenID = true;
    EXPECT_EQ(f->doMyFunctionCheck(), PoolStep::GoOn);
}

TEST_F(SearchReplaceTest, SettingsAndTheDerivedCaseSwitchAreReachableByName)
{
    Function0001 *f = searchReplace();
    int notified = 0;
    QObject::connect(f, &Function0001::yourSearchModeChanged, [&notified] { ++notified; });
    EXPECT_TRUE(f->property("enableCase").toBool());
    EXPECT_TRUE(f->setProperty("yourSearchMode", 9));
    EXPECT_FALSE(f->property("enableCase").toBool());
    EXPECT_EQ(notified, 1);
    for (const PanelField &field : f->panelDescription().fields) {
        const QString bound = field.property.isEmpty() ? field.enabledBy : field.property;
        EXPECT_TRUE(bound.isEmpty() || f->property(bound.toLatin1()).isValid()) << bound.toStdString();
    }
}

// --- The saved sets and their sheet's model.

TEST_F(SearchReplaceTest, SavedSetsAreAddedRemovedAndSavedAsMaps)
{
    Function0001 *f = searchReplace();
    EXPECT_EQ(f->addNewSearchSet(), 0);
    f->addOrRemoveSearchSet(0, {});
    f->searchSetsModel()->setData(f->searchSetsModel()->index(1, SearchSetsModel::SearchColumn), "ft.");
    f->searchSetsModel()->setData(f->searchSetsModel()->index(1, SearchSetsModel::CaseColumn), Qt::Unchecked,
                                  Qt::CheckStateRole);
    f->addOrRemoveSearchSet(1, {0});
    f->closeSeachSetsPanel();

    const QVariantList saved = PropertyList::read(f->searchSetsModel()->location()).toList();
    ASSERT_EQ(saved.size(), 1);
    const QVariantMap expected{{"Search", "ft."}, {"Replace", "*** ??? ***"}, {"Case", 0}, {"Mode", 1}};
    EXPECT_EQ(saved.first().toMap().keys(), expected.keys());
    EXPECT_EQ(SearchSet::fromMap(saved.first().toMap()), SearchSet::fromMap(expected));

    f->searchSetsModel()->setSearchSets({});
    f->reloadSearchSets();
    EXPECT_EQ(f->yourSearchSets().size(), 1);
}

TEST_F(SearchReplaceTest, AModeNumberOutsideTheModesSurvivesTheFileAndAnEditClampsIt)
{
    // A set saved by another version with a mode this one does not know keeps its number.
    const QVariantMap foreign{{"Search", "a"}, {"Replace", "b"}, {"Case", 1}, {"Mode", 12}};
    ASSERT_TRUE(PropertyList::write(searchReplace()->searchSetsModel()->location(), QVariantList{foreign}));
    searchReplace()->reloadSearchSets();
    ASSERT_EQ(searchReplace()->yourSearchSets().size(), 1);
    SearchSetsModel *model = searchReplace()->searchSetsModel();
    EXPECT_EQ(model->index(0, SearchSetsModel::ModeColumn).data().toLongLong(), 12);
    searchReplace()->closeSeachSetsPanel();
    EXPECT_EQ(PropertyList::read(model->location()).toList().value(0).toMap(), foreign);

    // The sheet only ever sets one of the nine modes.
    for (const auto &[edited, kept] : {std::pair{0, SearchMode::Everywhere}, std::pair{15, SearchMode::RegularExpression},
                                       std::pair{8, SearchMode::FirstInWord}}) {
        model->setData(model->index(0, SearchSetsModel::ModeColumn), edited);
        EXPECT_EQ(searchReplace()->yourSearchSets().first().mode, kept) << edited;
    }
}

TEST_F(SearchReplaceTest, DraggedRowsLandAboveTheDropRowInTheirOrder)
{
    struct MoveCase
    {
        QList<int> rows;
        int drop;
        QString expected;
    };
    const QList<MoveCase> cases = {
        {{0}, 3, "BCADE"}, {{4}, 0, "EABCD"}, {{0, 4}, 2, "BAECD"},
        {{1, 2}, 5, "ADEBC"}, {{2}, 2, "ABCDE"}, {{3, 1}, 0, "BDACE"},
    };
    SearchSetsModel *model = searchReplace()->searchSetsModel();
    for (const MoveCase &c : cases) {
        QList<SearchSet> sets;
        for (const QChar letter : QStringLiteral("ABCDE"))
            sets.append({letter, {}, 1, SearchMode::Everywhere});
        model->setSearchSets(sets);
        QModelIndexList dragged;
        for (int row : c.rows)
            dragged.append(model->index(row, SearchSetsModel::ReplaceColumn));
        std::unique_ptr<QMimeData> data(model->mimeData(dragged));
        EXPECT_FALSE(model->dropMimeData(data.get(), Qt::MoveAction, -1, -1, model->index(c.drop % 5, 0)))
            << "never on a row";
        EXPECT_FALSE(model->dropMimeData(data.get(), Qt::CopyAction, c.drop, 0, {}));
        EXPECT_TRUE(model->dropMimeData(data.get(), Qt::MoveAction, c.drop, 0, {}));
        QString order;
        for (const SearchSet &set : model->searchSets())
            order += set.search;
        EXPECT_EQ(order, c.expected) << c.drop;
    }
}

// --- End to end through orvane-cli on real MP3 files.

void tagWithMutagen(const QString &path, const QString &artist, const QString &title)
{
    QProcess python;
    python.start("/usr/bin/python3", {"-c",
                                      "import sys; from mutagen.easyid3 import EasyID3; from mutagen.id3 import ID3; "
                                      "ID3().save(sys.argv[1]); t = EasyID3(sys.argv[1]); "
                                      "t['artist'] = sys.argv[2]; t['title'] = sys.argv[3]; t.save()",
                                      path, artist, title});
    ASSERT_TRUE(python.waitForFinished(30000) && python.exitCode() == 0) << python.readAllStandardError().toStdString();
}

int runCli(const QStringList &arguments, QString *output = nullptr)
{
    QProcess cli;
    cli.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    cli.start(ORVANE_CLI_PATH, arguments);
    if (!cli.waitForFinished(60000))
        return -1;
    if (output)
        *output = QString::fromUtf8(cli.readAllStandardOutput() + cli.readAllStandardError());
    return cli.exitCode();
}

TEST(SearchReplaceFiles, OrvaneCliChangesTagsAndLeavesUnchangedFilesAlone)
{
    QTemporaryDir music;
    const QString featured = makeAudio(music.path(), "featured.mp3");
    const QString plain = makeAudio(music.path(), "plain.mp3");
    tagWithMutagen(featured, "Anna ft. Bo", "Song  ft. Cy");
    tagWithMutagen(plain, "Dee", "Other");
    const QDateTime past = QDateTime::currentDateTimeUtc().addDays(-2);
    for (const QString &path : {featured, plain}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.setFileTime(past, QFileDevice::FileModificationTime));
    }

    const QDateTime plainModified = QFileInfo(plain).lastModified();

    QString output;
    ASSERT_EQ(runCli({"library", "add", music.path()}, &output), 0) << output.toStdString();
    ASSERT_EQ(runCli({"organize", "1", music.path(), "--set", "yourSearchText=ft.", "--set", "yourReplaceText=feat.",
                      "--set", "yourSearchMode=1", "--set", "yourAlbum=false"},
                     &output),
              0)
        << output.toStdString();

    EXPECT_EQ(mutagenTag(featured, "artist"), "Anna feat. Bo");
    EXPECT_EQ(mutagenTag(featured, "title"), "Song feat. Cy");
    EXPECT_EQ(mutagenTag(plain, "artist"), "Dee");
    EXPECT_EQ(QFileInfo(plain).lastModified(), plainModified) << "an unchanged file is not rewritten";
    EXPECT_GT(QFileInfo(featured).lastModified(), plainModified);
}

} // namespace
