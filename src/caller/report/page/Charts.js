// Charts of the films that are found.

const mostBars = 8;

// Fewer bars are as thick as so many would be.
const leastBars = 6;

// Minutes, up to which a film belongs to a class of lengths.
const lengthClasses = [[15, "up to ¼ h"], [45, "¼ to ¾ h"], [75, "¾ to 1¼ h"], [105, "1¼ to 1¾ h"], [135, "1¾ to 2¼ h"], [Infinity, "longer"]];

// Writes the text of each bar behind it.
const barTexts = {
    id: "barTexts",
    afterDatasetsDraw(chart) {
        const {ctx} = chart;
        ctx.save();
        ctx.fillStyle = chart.options.color;
        ctx.font = Chart.helpers.toFont(chart.options.font).string;
        ctx.textBaseline = "middle";
        chart.getDatasetMeta(0).data.forEach((bar, index) => ctx.fillText(chart.data.texts[index], bar.x + 6, bar.y));
        ctx.restore();
    },
};

class BarChart {
    constructor(parent, title, onPick = null) {
        this.title = title;
        this.labelWidth = 0;
        this.heading = makeElement("h2", {}, title);
        this.canvas = makeElement("canvas");
        this.canvas.setAttribute("role", "img");
        parent.append(makeElement("section", {className: onPick ? "can-pick" : ""}, this.heading,
            makeElement("div", {className: "canvas"}, this.canvas)));
        this.chart = new Chart(this.canvas, {
            type: "bar",
            data: {labels: [], texts: [], datasets: [{data: [], maxBarThickness: 13, borderRadius: 2, minBarLength: 1}]},
            plugins: [barTexts],
            options: {
                indexAxis: "y",
                animation: false,
                maintainAspectRatio: false,
                events: onPick ? ["click"] : [],
                layout: {padding: {}},
                plugins: {legend: {display: false}, tooltip: {enabled: false}},
                scales: {
                    x: {display: false, beginAtZero: true, bounds: "data"},
                    y: {
                        grid: {display: false, drawBorder: false},
                        ticks: {autoSkip: false, crossAlign: "far"},
                        afterFit: scale => { scale.width = this.labelWidth; },
                    },
                },
                onClick: (event, [bar]) => bar && typeof this.keys[bar.index] === "string" && onPick(this.keys[bar.index]),
            },
        });
        this.takeColors();
    }

    // The colours are those of the style, which depend on the theme.
    takeColors() {
        const style = getComputedStyle(this.canvas);
        const {options, data} = this.chart;
        options.color = style.color;
        options.font = {family: style.fontFamily, size: 12};
        options.scales.y.ticks.color = style.color;
        options.scales.y.ticks.font = options.font;
        data.datasets[0].backgroundColor = style.caretColor;
        this.chart.update();
    }

    // Shows bars of {label, value, text, key}; a key is what is picked.
    show(bars, title = this.title) {
        this.heading.textContent = title;
        this.keys = bars.map(bar => bar.key);
        const {data} = this.chart;
        const missing = new Array(Math.max(0, leastBars - bars.length)).fill({label: "", text: "", value: null});
        const shown = [...bars, ...missing];
        data.labels = shown.map(bar => bar.label);
        data.texts = shown.map(bar => bar.text);
        data.datasets[0].data = shown.map(bar => bar.value);
        // By itself the library gives labels half of the width at most, and the texts none.
        this.labelWidth = this.#getWidth(data.labels);
        this.chart.options.layout.padding.right = this.#getWidth(data.texts);
        this.canvas.setAttribute("aria-label", `${title}: ${bars.map(bar => `${bar.label} ${bar.text}`).join(", ") || "none"}`);
        this.chart.update();
    }

    // How wide the longest of the texts is, in pixels, with a gap.
    #getWidth(texts) {
        const {ctx, options} = this.chart;
        ctx.font = Chart.helpers.toFont(options.font).string;
        return Math.ceil(Math.max(...texts.map(text => ctx.measureText(text).width))) + 10;
    }
}

class Charts {
    constructor(element, selection, onPick) {
        this.selection = selection;
        this.figures = element.querySelector("dl");
        const parent = element.querySelector("div");
        this.facetCharts = ["hdr", "codec", "resolution"].map(name => {
            const index = selection.facets.findIndex(facet => facet.name === name);
            const title = {hdr: "HDR kinds", codec: "Video codecs", resolution: "Resolutions"}[name];
            return {index, chart: new BarChart(parent, title, value => onPick(name, value))};
        });
        this.lengths = new BarChart(parent, "Total length");
    }

    takeColors() {
        for (const {chart} of this.facetCharts)
            chart.takeColors();
        this.lengths.takeColors();
    }

    show({found, rows}) {
        for (const {index, chart} of this.facetCharts)
            chart.show(this.#getBars(this.selection.facets[index], found[index]));
        this.#showTotals(rows.map(row => this.selection.films[row]));
    }

    // The values that films have, the most frequent ones when there are many.
    #getBars(facet, found) {
        const bars = facet.values
            .map((value, code) => ({key: value, label: showFacetValue(facet, value), value: found[code], text: counts.format(found[code])}))
            .filter(bar => bar.value > 0);
        if (bars.length <= mostBars)
            return bars;
        const others = bars.splice(mostBars - 1).reduce((sum, bar) => sum + bar.value, 0);
        return [...bars, {label: "Others", value: others, text: counts.format(others)}];
    }

    #showTotals(films) {
        const seconds = new Array(lengthClasses.length).fill(0);
        let size = 0;
        let failed = 0;
        for (const film of films) {
            const length = film.get("duration") ?? 0;
            seconds[lengthClasses.findIndex(([most]) => length < most * 60)] += length;
            size += film.get("size") ?? 0;
            failed += film.error === null ? 0 : 1;
        }
        const hours = value => `${value < 36e4 ? decimals.format(value / 3600) : counts.format(Math.round(value / 3600))} h`;
        const total = hours(seconds.reduce((sum, value) => sum + value, 0));
        this.lengths.show(lengthClasses.map(([, label], index) => ({label, value: seconds[index], text: hours(seconds[index])})),
            `Total length: ${total}`);
        const figures = {Films: counts.format(films.length), "Total length": total, "Total size": showSize(size), Failed: counts.format(failed)};
        this.figures.replaceChildren(...Object.entries(figures).map(
            ([name, value]) => makeElement("div", {}, makeElement("dt", {}, name), makeElement("dd", {}, value))));
    }
}
