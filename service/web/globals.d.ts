// What the libraries leave in the window; they have no types here.
declare const d3: any;
declare const L: any;
