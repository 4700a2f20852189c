// The filters: a group of check boxes for each facet, and a list of those that are set.
class Filters {
    // onChange gets the name of a facet, a value of it, and whether it is chosen now.
    constructor(form, list, selection, onChange) {
        this.list = list;
        this.facets = selection.facets;
        this.onChange = onChange;
        this.groups = this.facets.map(facet => {
            const rows = facet.values.map(value => this.#makeRow(facet, value));
            form.append(makeElement("fieldset", {}, makeElement("legend", {}, facet.label),
                makeElement("div", {className: "values"}, ...rows.map(row => row.element))));
            return rows;
        });
        form.addEventListener("submit", event => event.preventDefault());
    }

    #makeRow(facet, value) {
        const box = makeElement("input", {type: "checkbox", name: facet.name, value});
        const count = makeElement("span", {className: "count"});
        box.addEventListener("change", () => this.onChange(facet.name, value, box.checked));
        const name = makeElement("span", {className: "name"}, showFacetValue(facet, value));
        return {box, count, element: makeElement("label", {}, box, name, count)};
    }

    show(chosen, found) {
        this.groups.forEach((rows, index) => rows.forEach(({box, count, element}, code) => {
            const number = found[index][code];
            box.checked = chosen.get(box.name)?.has(box.value) ?? false;
            count.textContent = counts.format(number);
            element.classList.toggle("gives-none", number === 0);
        }));
        const chips = this.facets.flatMap(facet => [...chosen.get(facet.name) ?? []].map(value => this.#makeChip(facet, value)));
        this.list.replaceChildren(...chips);
    }

    #makeChip(facet, value) {
        const text = `${facet.label}: ${showFacetValue(facet, value)}`;
        const button = makeElement("button", {type: "button", ariaLabel: `Remove the filter ${text}`}, text);
        button.addEventListener("click", () => {
            this.onChange(facet.name, value, false);
            this.list.querySelector("button")?.focus();
        });
        return makeElement("li", {}, button);
    }
}
