// What the libraries give; they have no types here.
declare module "d3-scale";
declare const L: any;
