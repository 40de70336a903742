// How figures are spread: over the hours of the day, and for each connection.
import { scaleLinear, scaleLog } from "d3-scale";
import { api, choice, element, figure, fill, filters, letters, number, svg, texts, typeName, unitOf,
  whenSeen } from "./core.js";
import { margin, Plot } from "./plot.js";

const metrics = ["download", "upload", "rtt"];

/** A chart of one metric at a time, which its tools choose. */
class Spread {
  constructor(section, by, height) {
    this.section = section;
    this.by = by;
    this.metric = "download";
    this.figure = section.querySelector("figure");
    this.plot = new Plot(this.figure, height);
    this.plot.redraw = () => this.draw();
    this.plot.rows = () => this.rows();
    this.tools = section.querySelector(".tools");
    this.tools.append(...choice(metrics.map((metric) => [metric, texts[metric]]), this.metric, (metric) => {
      this.metric = metric;
      this.figure.querySelector("figcaption").textContent = texts[metric];
      this.load();
    }));
    whenSeen(section, () => this.load());
  }

  query() {
    const query = filters();
    query.set("metric", this.metric);
    query.set("by", this.by);
    return query;
  }

  async load() {
    try {
      this.groups = (await api("distribution", this.query())).groups;
      this.draw();
    } catch (problem) {
      this.plot.empty(problem.message);
    }
  }

  /** What a group is called. */
  name(group) {
    return group.key;
  }

  /** Draws the groups. */
  draw() {}

  rows() {
    return [[this.by === "hour" ? texts.hour : texts.connection, texts.tests, texts.least, "25 %", texts.median, "75 %",
      texts.greatest], ...(this.groups ?? []).map((group) => [this.name(group), number(group.count),
      ...[group.min, group.p25, group.median, group.p75, group.max].map((value) => figure(this.metric, value))])];
  }

  label() {
    const parts = this.groups.map((group) => fill(texts.ofType, this.name(group), figure(this.metric, group.median),
      figure(this.metric, group.p25), figure(this.metric, group.p75)));
    return texts[this.metric] + ": " + parts.join("; ");
  }

  tip(at, y, group) {
    this.plot.showTip(at, y, this.name(group), [[texts.median, figure(this.metric, group.median)],
      ["25 – 75 %", figure(this.metric, group.p25) + " – " + figure(this.metric, group.p75)],
      [texts.least, figure(this.metric, group.min)], [texts.greatest, figure(this.metric, group.max)],
      [texts.tests, number(group.count)]]);
  }
}

/** Median of each hour and the half around it. */
export class Hours extends Spread {
  constructor(section, types) {
    super(section, "hour", 250);
    // All connections together say more about which was used when than about any network.
    this.type = types.length > 1 ? types[1][0] : "";
    const select = element("select", { "aria-label": texts.connection, change: () => {
      this.type = select.value;
      this.load();
    } }, ...types.map(([value, name]) => element("option", { value }, name)));
    select.value = this.type;
    this.tools.append(select);
  }

  query() {
    const query = super.query();
    query.set("offset_min", String(-new Date().getTimezoneOffset()));
    if (this.type !== "") {
      query.set("type", this.type);
    }
    return query;
  }

  name(group) {
    const hour = Number(group.key);
    return `${String(hour).padStart(2, "0")}–${String((hour + 1) % 24).padStart(2, "0")}`;
  }

  draw() {
    if (!this.groups?.length) {
      return this.groups && this.plot.empty(texts.empty);
    }
    const greatest = Math.max(...this.groups.map((group) => group.p75));
    const unit = unitOf(this.metric, greatest);
    const bottom = this.plot.height - margin.bottom - 14;
    const x = scaleLinear().domain([0, 24]).range([margin.left, this.plot.width - margin.right]);
    const y = scaleLinear().domain([0, greatest / unit.divisor]).range([bottom, margin.top]).nice(4);
    const drawing = this.plot.begin(this.label());
    this.plot.leftAxis(y, unit.name);
    for (let hour = 0; hour <= 24; hour += this.plot.innerWidth > 420 ? 3 : 6) {
      drawing.append(svg("text", { class: "axis", x: x(hour), y: bottom + 16, "text-anchor": hour === 24 ? "end" : "middle" },
        String(hour)));
    }
    drawing.append(svg("text", { class: "axis", x: this.plot.width / 2, y: bottom + 32, "text-anchor": "middle" },
      texts.localTime));
    const at = (value) => y(value / unit.divisor);
    const width = x(1) - x(0);
    for (const group of this.groups) {
      const left = x(Number(group.key));
      const shape = svg("g", { class: "c-" + this.metric,
        pointerenter: () => this.tip(left + width, at(group.median), group), pointerleave: () => this.plot.hideTip() },
      svg("rect", { class: "box", x: left + width * 0.15, width: width * 0.7, y: at(group.p75), rx: 3,
        height: Math.max(at(group.p25) - at(group.p75), 1) }),
      svg("line", { class: "mid", x1: left + width * 0.15, x2: left + width * 0.85, y1: at(group.median),
        y2: at(group.median) }));
      drawing.append(shape);
    }
    this.plot.end();
  }
}

/** A box for each connection, on a logarithmic scale: from 2G to 5G it is a thousandfold. */
export class Types extends Spread {
  constructor(section) {
    super(section, "type", 250);
  }

  name(group) {
    return typeName(group.key);
  }

  draw() {
    if (!this.groups?.length) {
      return this.groups && this.plot.empty(texts.empty);
    }
    const unit = unitOf(this.metric, Math.max(...this.groups.map((group) => group.median)));
    const values = this.groups.flatMap((group) => [group.min, group.max]).map((value) => value / unit.divisor);
    const named = this.plot.innerWidth > 420 ? 110 : 0;
    const bottom = margin.top + this.groups.length * 44;
    const x = scaleLog().domain([Math.min(...values), Math.max(...values)])
      .range([margin.left + named, this.plot.width - margin.right - 6]).nice();
    const drawing = this.plot.begin(this.label(), bottom + margin.bottom + 14);
    for (const tick of x.ticks(4).filter((value) => value.toExponential()[0] === "1")) {
      drawing.append(svg("line", { class: "rule", x1: x(tick), x2: x(tick), y1: margin.top, y2: bottom }),
        svg("text", { class: "axis", x: x(tick), y: bottom + 16, "text-anchor": "middle" }, number(tick)));
    }
    drawing.append(svg("text", { class: "axis", x: this.plot.width / 2, y: bottom + 32, "text-anchor": "middle" },
      unit.name));
    const at = (value) => x(value / unit.divisor);
    this.groups.forEach((group, i) => {
      const middle = margin.top + i * 44 + 22;
      drawing.append(svg("text", { class: "axis", x: 0, y: middle + 4 },
        named > 0 ? typeName(group.key) : letters[group.key] ?? "?"));
      drawing.append(svg("g", { class: "c-" + group.key,
        pointerenter: () => this.tip(at(group.p75), middle, group), pointerleave: () => this.plot.hideTip() },
      svg("line", { x1: at(group.min), x2: at(group.max), y1: middle, y2: middle }),
      svg("path", { d: `M${at(group.min)},${middle - 6}v12M${at(group.max)},${middle - 6}v12` }),
      svg("rect", { class: "box", x: at(group.p25), width: Math.max(at(group.p75) - at(group.p25), 1), y: middle - 13,
        height: 26, rx: 4 }),
      svg("line", { class: "mid", x1: at(group.median), x2: at(group.median), y1: middle - 13, y2: middle + 13 })));
    });
    this.plot.end();
  }
}
