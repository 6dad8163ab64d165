// What the telephone sends: the frame's members as they are named there.

// What has a picture beside it.
export interface Pictured {
  image: string; // its address, "" without a picture
  imageLost: boolean; // there should be one, but the file is gone or is no picture; "image" is "" then
}

export interface Row extends Pictured {
  position: number;
  icon: number;
  text: string;
  selected: boolean;
}

export interface Field extends Pictured {
  kind: "text" | "number" | "selection";
  letters: "Abc" | "abc" | "ABC"; // of a text: which ones the digit keys enter
  position: number;
  icon: number;
  label: string;
  value: string;
  choice: number;
  choices: number;
  cursor: number;
  maxLength: number;
  focused: boolean;
  readOnly: boolean;
}

export interface Dialler {
  prefix: string;
  line1: string;
  line2: string;
  edit: string;
  editMode: boolean;
  scrolls: boolean;
}

export type Role =
  | "none" | "idle" | "list" | "exclusive" | "form"
  | "menu" | "question" | "notification" | "progress" | "dialler";

export interface Screen extends Pictured {
  role: Role;
  id: number;
  type: number;
  state: number;
  title: string;
  text: string;
  rows: Row[];
  rowCount: number;
  fields?: Field[];
  dialler?: Dialler;
  searchOpen: boolean;
  search: string;
  pending: string;
  asksForText: boolean; // the search is open, and no entry is listed yet
  highlighted: boolean;
  waiting: boolean;
}

export interface Call {
  id: string;
  state: "calling" | "alerting" | "incoming" | "connected" | "held" | "failed";
  name: string;
  number: string; // "" when it is the name, or is not known
  text: string; // the state in words, or why it has failed
  since: number; // of one that is or was connected: when that began, as Date.now() has it
}

export interface Signs {
  offHook: boolean;
  dialPad: boolean;
  calls: Call[];
}

export interface Frame {
  number: number;
  tabs: string[];
  currentTab: number;
  tabBarFocused: boolean;
  base: Screen;
  popup: Screen | null;
  softKeys: string[];
  systemWindow: string[];
  signs: Signs;
}

export type Verdict = "taken" | "busy" | "closed" | "unknown";

export interface Message {
  frame?: Frame;
  acks?: [number, Verdict][];
  language?: string;
  texts?: Record<string, string>;
}
