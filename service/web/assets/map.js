// Tests on a map: signs by connection that gather to clusters, how exact they are, the way of each series, and the
// median download of each cell.
import { scaleLog } from "d3-scale";
import { api, choice, element, figure, fill, filters, letters, number, sign, testAddress, texts, timeText, toggle, typeName }
  from "./core.js";
import { outlineLayer } from "./outline.js";
import { strengthOf } from "./tracks.js";

const nearest = 16; // zoom of a single spot
const pathLeast = 0.01; // degrees that a series must have moved
const pause = 200; // ms

function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}

function escaped(text) {
  return element("i", {}, text).innerHTML;
}

/** The outline, and the tiles above it: where they are late, or never come, it is still a map. */
function addGround(map) {
  const outline = outlineLayer(escaped(texts.offline)).addTo(map);
  const { tiles, thanks } = document.body.dataset;
  if (!tiles) {
    return outline;
  }
  // The page tells nobody where it is, but those who give tiles for nothing want to know who takes them.
  const Tiles = L.TileLayer.extend({
    createTile(coords, done) {
      const image = document.createElement("img");
      image.referrerPolicy = "origin";
      image.alt = "";
      image.addEventListener("load", () => done(null, image));
      image.addEventListener("error", () => done(new Error(), image));
      image.src = this.getTileUrl(coords);
      return image;
    },
  });
  new Tiles(tiles, { attribution: escaped(thanks ?? ""), maxZoom: 19 }).addTo(map);
  return outline;
}

function pin(type) {
  const drop = element("span", { class: "t-" + type }, element("b", {}, letters[type] ?? "?"));
  return L.divIcon({ className: "pin", html: drop, iconSize: [30, 38], iconAnchor: [15, 36], popupAnchor: [0, -34] });
}

function cluster(group) {
  const count = group.getChildCount();
  const size = 34 + Math.min(Math.round(Math.log2(count) * 3), 26);
  return L.divIcon({ className: "clump", html: element("span", {}, number(count)), iconSize: [size, size] });
}

/** What a screen reader says of something to press. */
function named(layer, label) {
  layer.on("add", () => {
    const icon = layer.getElement();
    icon?.setAttribute("role", "button");
    icon?.setAttribute("aria-label", label);
  });
  return layer;
}

function makeMap(place) {
  const map = L.map(place, { attributionControl: false, minZoom: 2, maxZoom: 19, worldCopyJump: true,
    renderer: L.canvas({ padding: 0.3 }), zoomControl: false, fadeAnimation: false });
  L.control.zoom({ zoomInTitle: texts.zoomIn, zoomOutTitle: texts.zoomOut }).addTo(map);
  place.setAttribute("role", "group");
  place.setAttribute("aria-label", texts.map);
  L.control.attribution({ prefix: false }).addTo(map);
  return map;
}

/** The way of one test through its phases, with how exact the first position was. */
export function pathOf(place, phases, accuracy) {
  const map = makeMap(place);
  addGround(map);
  const way = phases.map((phase) => [phase.latitude, phase.longitude]);
  L.polyline(way, { color: colour("--accent"), weight: 3 }).addTo(map);
  phases.forEach((phase, i) => L.circleMarker(way[i], { radius: 6, color: colour("--surface"), weight: 2,
    fillColor: colour("--accent"), fillOpacity: 1 }).bindTooltip(escaped(phase.phase)).addTo(map));
  if (accuracy > 0 && way.length > 0) {
    L.circle(way[0], { radius: accuracy, color: colour("--accent"), weight: 1, fillOpacity: 0.1 }).addTo(map);
  }
  // The outline alone tells nothing of a street.
  map.fitBounds(L.latLngBounds(way).pad(0.3), { maxZoom: document.body.dataset.tiles ? nearest - 2 : 8, animate: false });
}

/** All tests that are filtered. */
export class TestMap {
  constructor(place, tools) {
    this.place = place;
    this.complete = false; // all points are here
    this.map = makeMap(place);
    this.ground = addGround(this.map);
    this.layers = {
      markers: L.markerClusterGroup({ iconCreateFunction: cluster, maxClusterRadius: 44, showCoverageOnHover: false,
        animate: !matchMedia("(prefers-reduced-motion: reduce)").matches }),
      accuracy: L.layerGroup(), grid: L.layerGroup(), paths: L.layerGroup(),
    };
    this.layers.markers.on("animationend spiderfied", () => this.nameClusters());
    this.map.on("moveend", () => this.moved());
    this.tools = tools;
    this.offer();
    matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
      this.ground.redraw();
      this.draw();
    });
    this.load(true);
  }

  offer() {
    const shown = { markers: true, accuracy: true, grid: false, paths: true };
    for (const [name, layer] of Object.entries(this.layers)) {
      if (shown[name]) {
        layer.addTo(this.map);
      }
      this.tools.append(toggle([texts[name]], shown[name], (on) => {
        on ? layer.addTo(this.map) : layer.remove();
        this.moved();
      }));
    }
  }

  async load(first) {
    const query = filters();
    const bounds = this.seen && !first ? this.map.getBounds() : null;
    query.set("bbox", bounds ? [bounds.getWest(), bounds.getSouth(), bounds.getEast(), bounds.getNorth()]
      .map((value, i) => Math.min(Math.max(value, i % 2 ? -90 : -180), i % 2 ? 90 : 180).toFixed(4)).join(",")
      : "-180,-90,180,90");
    // At first nobody sees the cells; few of them come sooner.
    query.set("zoom", String(bounds ? this.map.getZoom() : 3));
    const answer = await api("map", query).catch((problem) => {
      this.place.replaceChildren(element("p", {}, problem.message));
    });
    if (!answer) {
      return;
    }
    // Once all are here nothing but the grid changes when the map moves.
    this.complete ||= Boolean(first) && answer.points.length > 0;
    if (!this.complete || first) {
      this.points = answer.points;
    }
    this.cells = answer.cells;
    if (first) {
      this.look();
    }
    this.draw();
  }

  /** Shows all that there is. */
  look() {
    const places = this.points.length > 0 ? this.points.map((point) => [point.latitude, point.longitude])
      : this.cells.flatMap((cell) => [[cell.latitude, cell.longitude],
        [cell.latitude + cell.size_deg, cell.longitude + cell.size_deg]]);
    if (places.length === 0) {
      this.map.setView([46.8, 8.2], 6);
      this.place.append(element("p", { class: "tip" }, texts.noPositions));
    } else {
      this.map.fitBounds(L.latLngBounds(places), { padding: [24, 24], maxZoom: nearest, animate: false });
    }
    this.seen = true;
  }

  moved() {
    this.nameClusters();
    if (this.seen && (!this.complete || this.map.hasLayer(this.layers.grid))) {
      clearTimeout(this.waiting);
      this.waiting = setTimeout(() => this.load(false), pause);
    }
  }

  nameClusters() {
    for (const icon of this.place.querySelectorAll(".clump")) {
      icon.setAttribute("role", "button");
      icon.setAttribute("aria-label", fill(texts.cluster, icon.textContent));
    }
  }

  draw() {
    const { markers, accuracy, grid, paths } = this.layers;
    if (this.drawn !== this.points) {
      this.drawn = this.points;
      markers.clearLayers();
      markers.addLayers(this.points.map((point) => this.marker(point)));
    }
    for (const layer of [accuracy, grid, paths]) {
      layer.clearLayers();
    }
    for (const point of this.points) {
      if (point.accuracy_m > 0) {
        L.circle([point.latitude, point.longitude], { radius: point.accuracy_m, color: colour("--accent"), weight: 1,
          fillOpacity: 0.08, interactive: false }).addTo(accuracy);
      }
    }
    for (const way of this.ways()) {
      L.polyline(way, { color: colour("--accent"), weight: 2.5, opacity: 0.7, interactive: false }).addTo(paths);
    }
    this.drawCells(grid);
    this.nameClusters();
  }

  marker(point) {
    const title = `${typeName(point.type)} · ${timeText(point.time_ms)} · ↓ ${figure("download", point.download_bps)}`;
    const marker = L.marker([point.latitude, point.longitude], { icon: pin(point.type), title });
    marker.bindPopup(() => element("div", {}, element("p", {}, sign(point.type), typeName(point.type)),
      element("p", {}, timeText(point.time_ms)), element("p", {}, "↓ " + figure("download", point.download_bps)),
      element("a", { href: testAddress(point.id) }, texts.open)));
    return named(marker, title);
  }

  /** The points of each series that went somewhere, in the order of time. */
  ways() {
    const series = new Map();
    for (const point of this.points) {
      series.set(point.series_id, [...series.get(point.series_id) ?? [], [point.latitude, point.longitude]]);
    }
    return [...series.values()].filter((way) => way.length > 2 &&
      L.latLngBounds(way).getSouthWest().distanceTo(L.latLngBounds(way).getNorthEast()) > pathLeast * 111_000);
  }

  drawCells(grid) {
    drawCells(this.cells.map((cell) => ({ latitude: cell.latitude, longitude: cell.longitude, height: cell.size_deg,
      width: cell.size_deg, count: cell.count, median: cell.median_bps })), grid);
  }
}

/** Cells in the colour of their median, from little to much. */
function drawCells(cells, target) {
  const medians = cells.map((cell) => cell.median).filter((value) => value > 0);
  const scale = scaleLog().domain([Math.min(...medians, 1e9), Math.max(...medians, 1)])
    .range([colour("--up"), colour("--nr")]).clamp(true);
  for (const { latitude, longitude, height, width, count, median } of cells) {
    const tint = median > 0 ? scale(median) : colour("--other");
    L.rectangle([[latitude, longitude], [latitude + height, longitude + width]], { color: tint, weight: 1,
      fillOpacity: 0.4 }).bindTooltip(escaped(fill(texts.cellMedian, number(count), figure("download", median))))
      .addTo(target);
  }
}

/** Cells in the colours of the power that tracks received there. */
function drawSignal(cells, target) {
  for (const { latitude, longitude, height, width, rsrp } of cells) {
    if (rsrp) {
      const tint = colour(strengthOf(rsrp.median).colour);
      L.rectangle([[latitude, longitude], [latitude + height, longitude + width]], { color: tint, weight: 1,
        fillOpacity: 0.4 }).bindTooltip(escaped(fill(texts.cellSignal, number(rsrp.count), number(rsrp.median))))
        .addTo(target);
    }
  }
}

/** A map of nothing but cells. @param {HTMLElement} [tools] */
export function cellMap(place, cells, tools) {
  const map = makeMap(place);
  addGround(map);
  map.fitBounds(cells.length > 0 ? L.latLngBounds(cells.flatMap((cell) => [[cell.latitude, cell.longitude],
    [cell.latitude + cell.height, cell.longitude + cell.width]])) : [[45.8, 5.9], [47.8, 10.5]], { animate: false });
  const layer = L.layerGroup().addTo(map);
  const show = (what) => {
    layer.clearLayers();
    what === "rsrp" ? drawSignal(cells, layer) : drawCells(cells.filter(({ count }) => count > 0), layer);
  };
  show("download");
  if (tools && cells.some(({ rsrp }) => rsrp)) {
    tools.append(...choice([["download", texts.download], ["rsrp", texts.bySignal]], "download", show));
  }
}
