#include "domain/standstock/ChartPages.h"

#include "base/Numbers.h"
#include "base/Settings.h"
#include "domain/output/ChartData.h"
#include "domain/output/ReportTables.h"
#include "store/DBEngine.h"
#include "store/RunStore.h"

namespace sendrel {

void BeginChartSequence(RunStore &db)
{
    WriteTransaction transaction(db.DBEngine);
    ClearReportTables(db, false);
    transaction.commit();
}

QString ChartYearText(const CycleListEntry &entry)
{
    return DefaultText(ToInt16(ReadNumber(entry.yearText)));
}

ChartPage CompileChartPage(RunStore &db, const Settings &settings, StandStockData &data, const ChartPageRequest &request)
{
    ChartPage page;
    page.yearText = ChartYearText(request.entry);
    data.CalcReport(db, request.run, ToInt16(request.entry.cycle));
    page.titles = ChartWindowTitles(settings, request.density, request.run, page.yearText);
    page.caption = ChartWindowCaption(settings, request.density, request.run, page.yearText);
    return page;
}

ChartPage MakeChartPage(RunStore &db, const Settings &settings, const ClassLayout &layout, StandStockData &data,
                        const ChartPageRequest &request, ChartData &gphDensity, ChartData &gphMerchVol)
{
    ChartPage page = CompileChartPage(db, settings, data, request);
    page.maxima = PrintClassCharts(db, layout, data, gphDensity, gphMerchVol, request.yAxisMax);
    gphDensity.ChartGrid(request.grid);
    gphMerchVol.ChartGrid(request.grid);
    SetTitles(request.density ? gphDensity : gphMerchVol, page.titles);
    return page;
}

}  // namespace sendrel
